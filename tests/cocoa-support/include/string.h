#pragma once

// Adds the bounded copy that this C library lacks.

#include_next <string.h>

#ifdef __cplusplus
extern "C" {
#endif

size_t strlcpy(char* out, const char* text, size_t size);

#ifdef __cplusplus
}
#endif
