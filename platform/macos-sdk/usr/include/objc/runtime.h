#pragma once

#include <objc/objc.h>

typedef struct objc_method* Method;

OBJC_EXPORT BOOL class_addMethod(Class _Nullable cls, SEL _Nonnull name,
                                 IMP _Nonnull implementation, const char* _Nullable types);
OBJC_EXPORT Method _Nullable class_getInstanceMethod(Class _Nullable cls, SEL _Nonnull name);
OBJC_EXPORT void method_exchangeImplementations(Method _Nonnull first, Method _Nonnull second);
OBJC_EXPORT const char* _Nonnull object_getClassName(id _Nullable object);
OBJC_EXPORT Class _Nullable objc_getClass(const char* _Nonnull name);
OBJC_EXPORT const char* _Nullable method_getTypeEncoding(Method _Nonnull method);
OBJC_EXPORT IMP _Nonnull method_setImplementation(Method _Nonnull method,
                                                  IMP _Nonnull implementation);
OBJC_EXPORT id _Nullable objc_loadWeak(id _Nullable* _Nonnull location);
OBJC_EXPORT id _Nullable objc_storeWeak(id _Nullable* _Nonnull location, id _Nullable object);
