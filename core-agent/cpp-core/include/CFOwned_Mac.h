#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <type_traits>

/// Releases one reference. Never called for null.
struct CFReleaser {
  void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// Owns the result, or null, of a CoreFoundation function with "Create" or "Copy" in its name.
template <class Reference>
using CFOwned = std::unique_ptr<std::remove_pointer_t<Reference>, CFReleaser>;
