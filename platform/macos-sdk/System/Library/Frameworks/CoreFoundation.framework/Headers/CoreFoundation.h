#pragma once

#include <MacTypes.h>

#ifdef __cplusplus
#define CF_EXPORT extern "C"
#else
#define CF_EXPORT extern
#endif

// The Objective-C class of the same objects.
#define CF_BRIDGED_TYPE(type) __attribute__((objc_bridge(type)))
#define CF_BRIDGED_MUTABLE_TYPE(type) __attribute__((objc_bridge_mutable(type)))

// clang-format off
#define CF_ENUM(type, name) enum name : type name; enum name : type
#ifdef __cplusplus
#define CF_OPTIONS(type, name) type name; enum : type
#else
#define CF_OPTIONS CF_ENUM
#endif
// clang-format on

// Functions named "Create" or "Copy" give a reference that is the caller's to release.
#pragma clang arc_cf_code_audited begin

typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef double CFTimeInterval;
typedef CFTimeInterval CFAbsoluteTime;
typedef UInt32 CFStringEncoding;

typedef const CF_BRIDGED_TYPE(id) void* CFTypeRef;
typedef const struct CF_BRIDGED_TYPE(id) __CFAllocator* CFAllocatorRef;
typedef struct CF_BRIDGED_MUTABLE_TYPE(id) __CFBundle* CFBundleRef;
typedef struct CF_BRIDGED_MUTABLE_TYPE(NSCalendar) __CFCalendar* CFCalendarRef;
typedef const struct CF_BRIDGED_TYPE(NSDate) __CFDate* CFDateRef;
typedef struct CF_BRIDGED_TYPE(NSError) __CFError* CFErrorRef;
typedef const struct CF_BRIDGED_TYPE(NSString) __CFString* CFStringRef;
typedef const struct CF_BRIDGED_TYPE(NSTimeZone) __CFTimeZone* CFTimeZoneRef;
typedef const struct CF_BRIDGED_TYPE(NSURL) __CFURL* CFURLRef;
typedef CFStringRef CFCalendarIdentifier;

typedef CF_ENUM(CFStringEncoding, CFStringBuiltInEncodings) {
  kCFStringEncodingMacRoman = 0,
  kCFStringEncodingUTF8 = 0x08000100,
};
typedef CF_ENUM(CFIndex, CFURLPathStyle) { kCFURLPOSIXPathStyle = 0 };

CF_EXPORT const CFAllocatorRef kCFAllocatorDefault;
CF_EXPORT const CFAllocatorRef kCFAllocatorSystemDefault;
CF_EXPORT const CFCalendarIdentifier kCFGregorianCalendar;
CF_EXPORT const CFTimeInterval kCFAbsoluteTimeIntervalSince1970;
CF_EXPORT const CFStringRef kCFURLContentModificationDateKey;

CF_EXPORT CFTypeID CFGetTypeID(CFTypeRef object);
CF_EXPORT void CFRelease(CFTypeRef object);

#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))
CF_EXPORT CFTypeID CFStringGetTypeID(void);
CF_EXPORT CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text,
                                                CFStringEncoding encoding);
CF_EXPORT CFIndex CFStringGetLength(CFStringRef text);
CF_EXPORT CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
CF_EXPORT Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex size,
                                     CFStringEncoding encoding);

CF_EXPORT CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef path,
                                                 CFURLPathStyle style, Boolean isDirectory);
CF_EXPORT Boolean CFURLCopyResourcePropertyForKey(CFURLRef url, CFStringRef key, void* value,
                                                  CFErrorRef* error);

CF_EXPORT CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef url);
CF_EXPORT CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);
CF_EXPORT Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error);
CF_EXPORT void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name);

CF_EXPORT CFStringRef CFErrorCopyDescription(CFErrorRef error);
CF_EXPORT CFIndex CFErrorGetCode(CFErrorRef error);

CF_EXPORT CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);
CF_EXPORT CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);
CF_EXPORT CFTimeZoneRef CFTimeZoneCreateWithName(CFAllocatorRef allocator, CFStringRef name,
                                                 Boolean tryAbbreviation);
CF_EXPORT CFCalendarRef CFCalendarCreateWithIdentifier(CFAllocatorRef allocator,
                                                       CFCalendarIdentifier identifier);
CF_EXPORT void CFCalendarSetTimeZone(CFCalendarRef calendar, CFTimeZoneRef zone);
CF_EXPORT Boolean CFCalendarDecomposeAbsoluteTime(CFCalendarRef calendar, CFAbsoluteTime time,
                                                  const char* components, ...);

#pragma clang arc_cf_code_audited end
