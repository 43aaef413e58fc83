#pragma once

// Declares what the macOS halves call of CoreFoundation, as macOS does. Also for C, since
// Foundation includes this file if there is one.

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned char Boolean;
typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef uint32_t CFStringEncoding;
typedef double CFAbsoluteTime;
typedef CFIndex CFURLPathStyle;

typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFError* CFErrorRef;
typedef const struct __CFDate* CFDateRef;
typedef struct __CFBundle* CFBundleRef;
typedef const struct __CFTimeZone* CFTimeZoneRef;
typedef struct __CFCalendar* CFCalendarRef;
typedef CFStringRef CFCalendarIdentifier;

#define kCFAllocatorDefault ((CFAllocatorRef)0)
#define kCFAllocatorSystemDefault ((CFAllocatorRef)0)
#define kCFStringEncodingUTF8 ((CFStringEncoding)0x08000100)
#define kCFURLPOSIXPathStyle ((CFURLPathStyle)0)
#define kCFAbsoluteTimeIntervalSince1970 978307200.0

void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFStringGetTypeID(void);

CFStringRef CFMakeConstantString(const char* text);
#define CFSTR(text) CFMakeConstantString("" text)
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text,
                                      CFStringEncoding encoding);
CFIndex CFStringGetLength(CFStringRef text);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex size, CFStringEncoding encoding);

#define kCFURLContentModificationDateKey CFSTR("NSURLContentModificationDateKey")
CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef path,
                                       CFURLPathStyle style, Boolean isDirectory);
Boolean CFURLCopyResourcePropertyForKey(CFURLRef url, CFStringRef key, void* value,
                                        CFErrorRef* error);
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);

CFStringRef CFErrorCopyDescription(CFErrorRef error);
CFIndex CFErrorGetCode(CFErrorRef error);

CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef url);
Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error);
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);
void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name);

#define kCFGregorianCalendar CFSTR("gregorian")
CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);
CFTimeZoneRef CFTimeZoneCreateWithName(CFAllocatorRef allocator, CFStringRef name,
                                       Boolean tryAbbreviation);
CFCalendarRef CFCalendarCreateWithIdentifier(CFAllocatorRef allocator,
                                             CFCalendarIdentifier identifier);
void CFCalendarSetTimeZone(CFCalendarRef calendar, CFTimeZoneRef zone);
Boolean CFCalendarDecomposeAbsoluteTime(CFCalendarRef calendar, CFAbsoluteTime time,
                                        const char* description, ...);

#ifdef __cplusplus
}
#endif
