#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <objc/NSObject.h>

#define FOUNDATION_EXPORT OBJC_EXPORT
#define NS_ENUM CF_ENUM
#define NS_OPTIONS CF_OPTIONS
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))
#define NS_FORMAT_FUNCTION(text, arguments) __attribute__((format(__NSString__, text, arguments)))

#pragma clang assume_nonnull begin

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
typedef NSUInteger NSStringEncoding;

typedef struct CGPoint {
  double x, y;
} CGPoint;
typedef CGPoint NSPoint;
typedef struct CGSize {
  double width, height;
} CGSize;
typedef struct CGRect {
  CGPoint origin;
  CGSize size;
} CGRect;
typedef CGRect NSRect;
static inline NSRect NSMakeRect(double x, double y, double width, double height) {
  return (NSRect){{x, y}, {width, height}};
}

enum : NSStringEncoding { NSMacOSRomanStringEncoding = 30 };

typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) { NSLibraryDirectory = 5 };
typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) { NSUserDomainMask = 1 };

FOUNDATION_EXPORT const NSPoint NSZeroPoint;

@interface NSArray<__covariant ObjectType> : NSObject
@property(readonly) NSUInteger count;
@property(nullable, nonatomic, readonly) ObjectType firstObject;
- (ObjectType)objectAtIndex:(NSUInteger)index;
@end

@interface NSAutoreleasePool : NSObject
@end

@interface NSException : NSObject
+ (void)raise:(NSString*)name format:(NSString*)format, ... NS_FORMAT_FUNCTION(2, 3);
@end

@interface NSString : NSObject
+ (nullable instancetype)stringWithUTF8String:(const char*)text;
- (nullable instancetype)initWithUTF8String:(const char*)text;
- (nullable instancetype)initWithCString:(const char*)text encoding:(NSStringEncoding)encoding;
@property(nullable, readonly) const char* UTF8String NS_RETURNS_INNER_POINTER;
@property(readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
@property(readonly, copy) NSString* stringByExpandingTildeInPath;
@end

@interface NSURL : NSObject
@property(nullable, readonly, copy) NSString* path;
@end

FOUNDATION_EXPORT Class _Nullable NSClassFromString(NSString* name);
FOUNDATION_EXPORT void NSLog(NSString* format, ...) NS_FORMAT_FUNCTION(1, 2);
FOUNDATION_EXPORT NSArray<NSString*>* NSSearchPathForDirectoriesInDomains(
    NSSearchPathDirectory directory, NSSearchPathDomainMask domains, BOOL expandTilde);

#pragma clang assume_nonnull end
