#pragma once

// Adds the weak references that GCC's runtime lacks.

#include_next <objc/runtime.h>

#ifdef __cplusplus
extern "C" {
#endif

id objc_storeWeak(id* slot, id object);
id objc_loadWeak(id* slot);

#ifdef __cplusplus
}
#endif
