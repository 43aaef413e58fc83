#import <Foundation/Foundation.h>
#import <objc/runtime.h>
#include <string.h>

#include <algorithm>
#include <map>

#include "WeakReferences.h"

namespace {

// By slot.
std::map<id*, id> weakReferences;

}  // namespace

void ClearWeakReferences(const void* object) {
  std::erase_if(weakReferences, [object](const auto& entry) {
    if (entry.second != object) return false;
    *entry.first = nil;
    return true;
  });
}

id objc_storeWeak(id* slot, id object) {
  weakReferences.erase(slot);
  if (object) weakReferences[slot] = object;
  return *slot = object;
}

id objc_loadWeak(id* slot) {
  return [[*slot retain] autorelease];
}

unsigned int AutoreleasedObjects() {
  return [[NSAutoreleasePool currentPool] autoreleaseCount];
}

size_t strlcpy(char* out, const char* text, size_t size) {
  const size_t length = strlen(text);
  if (size > 0) {
    const size_t copied = std::min(length, size - 1);
    memcpy(out, text, copied);
    out[copied] = '\0';
  }
  return length;
}
