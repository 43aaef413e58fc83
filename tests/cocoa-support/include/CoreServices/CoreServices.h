#pragma once

// Declares what the macOS halves call of CoreServices, as macOS does.

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

using OSStatus = int32_t;
enum { noErr = 0 };

#pragma pack(push, 2)
struct UTCDateTime {
  uint16_t highSeconds;
  uint32_t lowSeconds;
  uint16_t fraction;
};
#pragma pack(pop)

OSStatus UCConvertCFAbsoluteTimeToUTCDateTime(CFAbsoluteTime time, UTCDateTime* result);
}
