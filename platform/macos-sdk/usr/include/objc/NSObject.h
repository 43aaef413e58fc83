#pragma once

#include <objc/objc.h>

@class NSString;

@protocol NSObject
- (BOOL)isKindOfClass:(Class)kind;
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
@property(readonly, copy) NSString* description;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject> {
  Class isa;
}
+ (instancetype)alloc;
+ (Class)class;
- (void)dealloc;
- (IMP)methodForSelector:(SEL)selector;
- (instancetype)init;
@end
