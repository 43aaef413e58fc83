#pragma once

#include <cstdio>
#include <cstdlib>

/// Aborts with a message if a property of the code under test doesn't hold.
inline void Require(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "Violated: %s\n", property);
  std::abort();
}
