#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

// The font manager's core process, as far as others see it: an executable that runs. It lives as
// long as somebody holds its standard input open, and never longer than whoever started it.
int main() {
  const pid_t parent = getppid();
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  // The signal doesn't come for a parent that was gone before it was asked for.
  if (getppid() != parent) return 1;
  std::cout << "ready\n" << std::flush;
  while (std::cin.get() != std::char_traits<char>::eof()) {
  }
  return 0;
}
