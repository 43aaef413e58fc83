#include "AllocationCount.h"

#include <cstdlib>
#include <new>

int64_t allocation_count = 0;

// These operators have a unit of their own, so that the compiler can't drop an allocation together
// with its release.
void* operator new(size_t size) {
  ++allocation_count;
  if (void* memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, size_t) noexcept {
  std::free(memory);
}
