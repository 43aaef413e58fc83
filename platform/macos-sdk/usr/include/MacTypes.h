#pragma once

#include <stdint.h>

typedef uint8_t Boolean;
typedef uint16_t UInt16;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef SInt32 OSStatus;

enum { noErr = 0 };
