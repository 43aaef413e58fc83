#pragma once

#include <CoreFoundation/CoreFoundation.h>

// Seconds since 1904, and a fraction in units of 1/65536 second.
#pragma pack(push, 2)
typedef struct UTCDateTime {
  UInt16 highSeconds;
  UInt32 lowSeconds;
  UInt16 fraction;
} UTCDateTime;
#pragma pack(pop)

CF_EXPORT OSStatus UCConvertCFAbsoluteTimeToUTCDateTime(CFAbsoluteTime time, UTCDateTime* dateTime);
