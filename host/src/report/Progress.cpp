#include "Progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

namespace host {

void ShowProgress(const std::string& text) {
  static const bool isShown = isatty(STDERR_FILENO) != 0;
  if (isShown) fmt::print(stderr, "\r\x1b[K{}", text);
}

}  // namespace host
