#include <iostream>

// The font manager's core process, as far as others see it: an executable that runs. It lives as
// long as somebody holds its standard input open.
int main() {
  std::cout << "ready\n" << std::flush;
  while (std::cin.get() != std::char_traits<char>::eof()) {
  }
  return 0;
}
