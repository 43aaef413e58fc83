#include <iostream>

// Stands in for the font manager's core process: runs until its standard input is closed.
int main() {
  std::cout << "ready\n" << std::flush;
  while (std::cin.get() != std::char_traits<char>::eof()) {
  }
  return 0;
}
