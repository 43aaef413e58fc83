#pragma once

#include <objc/objc.h>

typedef struct objc_method* Method;

OBJC_EXPORT Method _Nullable class_getInstanceMethod(Class _Nullable cls, SEL _Nonnull name);
OBJC_EXPORT void method_exchangeImplementations(Method _Nonnull first, Method _Nonnull second);
OBJC_EXPORT id _Nullable objc_loadWeak(id _Nullable* _Nonnull location);
OBJC_EXPORT id _Nullable objc_storeWeak(id _Nullable* _Nonnull location, id _Nullable object);
