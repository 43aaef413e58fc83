#pragma once

#include <stddef.h>
#include <stdint.h>

/* The host's basic suite: the first table that a plug-in gets, and the door to all others. C11 and
   C++. */

typedef int32_t int32;
typedef int32_t SPErr; /* 0 for success */
typedef unsigned char SPBoolean;

/* Acquires suites by name and version. A suite is a struct of function pointers; every acquisition
   is balanced by one release. The host owns the table and the suites. Main thread only. */
typedef struct SPBasicSuite {
  /* Writes the suite's table to `*suite`. Fails when the host refuses the name or the version. */
  SPErr (*AcquireSuite)(const char* name, int32 version, const void** suite);
  SPErr (*ReleaseSuite)(const char* name, int32 version);
  SPBoolean (*IsEqual)(const char* token1, const char* token2);
  SPErr (*AllocateBlock)(size_t size, void** block);
  SPErr (*FreeBlock)(void* block);
  SPErr (*ReallocateBlock)(void* block, size_t newSize, void** newBlock);
  SPErr (*Undefined)(void);
} SPBasicSuite;
