#pragma once

#include <stdbool.h>
#include <sys/types.h>

#ifdef __cplusplus
#define OBJC_EXPORT extern "C"
#define nil nullptr
#else
#define OBJC_EXPORT extern
#define nil ((void*)0)
#endif

typedef struct objc_class* Class;
typedef struct objc_object {
  Class _Nonnull isa;
} * id;
typedef struct objc_selector* SEL;
typedef void (*IMP)(void);

#if __OBJC_BOOL_IS_BOOL
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no
