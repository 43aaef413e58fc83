#include <CoreFoundation/CoreFoundation.h>

#include <cmath>

#include "CFOwned_Mac.h"
#include "VeldraneFileUtils.h"

int64_t VeldraneFileUtils::GetFileModificationDate(const char* path) {
  const CFOwned<CFStringRef> text(
      CFStringCreateWithCString(kCFAllocatorDefault, path, kCFStringEncodingUTF8));
  if (!text) return 0;
  const CFOwned<CFURLRef> url(
      CFURLCreateWithFileSystemPath(kCFAllocatorDefault, text.get(), kCFURLPOSIXPathStyle, false));
  if (!url) return 0;
  CFDateRef value = nullptr;
  CFURLCopyResourcePropertyForKey(url.get(), kCFURLContentModificationDateKey, &value, nullptr);
  const CFOwned<CFDateRef> date(value);
  if (!date) return 0;
  // Cut the fraction off first: the sum of two doubles could round it up.
  return static_cast<int64_t>(std::trunc(CFDateGetAbsoluteTime(date.get())) +
                              kCFAbsoluteTimeIntervalSince1970);
}
