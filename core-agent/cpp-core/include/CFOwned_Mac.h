#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <type_traits>

/// Gives back one reference. Never called for null.
struct CFReleaser {
  void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// Owns what a CoreFoundation function with "Create" or "Copy" in its name gave, null included.
template <class Reference>
using CFOwned = std::unique_ptr<std::remove_pointer_t<Reference>, CFReleaser>;
