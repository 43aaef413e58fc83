#include <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>
#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>

#include "CocoaFakes.h"

namespace {

constexpr CFTypeID kTextType = 7;
constexpr CFTypeID kOtherType = 1;

// Several threads may ask for the time at once.
std::mutex mutex;

// CoreFoundation leaves nothing to its caller's pool.
struct OwnPool {
  ~OwnPool() { [pool release]; }
  NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
};

bool Fails(const char* function) {
  const std::lock_guard lock(mutex);
  cocoaFakes.calls.emplace_back(function);
  return cocoaFakes.failing.contains(function);
}

// Records and returns an object that the caller owns.
void* Made(const char* function, id object) {
  const std::lock_guard lock(mutex);
  if (object) cocoaFakes.owned.emplace_back(object, function);
  return object;
}

id Object(CFTypeRef object) {
  return static_cast<id>(const_cast<void*>(object));
}

// GNUstep doesn't look for the executable at the top of a framework without versions.
const char* Executable(NSBundle* bundle) {
  NSString* name = [[bundle executablePath] lastPathComponent];
  return [[[bundle bundlePath] stringByAppendingPathComponent:name] fileSystemRepresentation];
}

}  // namespace

void CFRelease(CFTypeRef object) {
  {
    const std::lock_guard lock(mutex);
    auto& owned = cocoaFakes.owned;
    const auto found = std::find_if(owned.rbegin(), owned.rend(),
                                    [&](const auto& entry) { return entry.first == object; });
    // As the real one does for null and for an object that its caller doesn't own.
    if (found == owned.rend()) std::abort();
    cocoaFakes.calls.push_back("CFRelease " + found->second);
    owned.erase(std::next(found).base());
  }
  [Object(object) release];
}

CFTypeID CFGetTypeID(CFTypeRef object) {
  return [Object(object) isKindOfClass:[NSString class]] ? kTextType : kOtherType;
}

CFTypeID CFStringGetTypeID() {
  return kTextType;
}

CFStringRef CFMakeConstantString(const char* text) {
  static std::map<std::string, NSString*> constants;
  const std::lock_guard lock(mutex);
  NSString*& constant = constants[text];
  if (!constant) constant = [[NSString alloc] initWithUTF8String:text];
  return reinterpret_cast<CFStringRef>(constant);
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* text, CFStringEncoding encoding) {
  if (Fails(__func__) || encoding != kCFStringEncodingUTF8) return nullptr;
  const OwnPool pool;
  return static_cast<CFStringRef>(Made(__func__, [[NSString alloc] initWithUTF8String:text]));
}

CFIndex CFStringGetLength(CFStringRef text) {
  return static_cast<CFIndex>([Object(text) length]);
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding) {
  return 3 * length;
}

Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex size,
                           CFStringEncoding encoding) {
  if (Fails(__func__) || encoding != kCFStringEncodingUTF8) return false;
  const OwnPool pool;
  NSString* string = Object(text);
  return [string getCString:buffer
                  maxLength:static_cast<NSUInteger>(size)
                   encoding:NSUTF8StringEncoding];
}

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef, CFStringRef path, CFURLPathStyle style,
                                       Boolean isDirectory) {
  if (Fails(__func__) || style != kCFURLPOSIXPathStyle) return nullptr;
  const OwnPool pool;
  NSURL* url = [[NSURL alloc] initFileURLWithPath:Object(path) isDirectory:isDirectory];
  return static_cast<CFURLRef>(Made(__func__, url));
}

Boolean CFURLCopyResourcePropertyForKey(CFURLRef url, CFStringRef key, void* value, CFErrorRef*) {
  if (Fails(__func__) || key != kCFURLContentModificationDateKey) return false;
  const OwnPool pool;
  NSString* path = [Object(url) path];
  NSDate* date = [[[NSFileManager defaultManager] fileAttributesAtPath:path
                                                          traverseLink:NO] fileModificationDate];
  *static_cast<void**>(value) = Made(__func__, [date retain]);
  return date != nil;
}

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) {
  return [static_cast<NSDate*>(Object(date)) timeIntervalSinceReferenceDate];
}

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef url) {
  if (Fails(__func__)) return nullptr;
  const OwnPool pool;
  NSString* path = [Object(url) path];
  return static_cast<CFBundleRef>(Made(__func__, [[NSBundle alloc] initWithPath:path]));
}

CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
  Fails(__func__);
  const OwnPool pool;
  return [[Object(bundle) infoDictionary] objectForKey:Object(key)];
}

Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error) {
  const bool fails = Fails(__func__);
  const OwnPool pool;
  if (!fails && dlopen(Executable(Object(bundle)), RTLD_NOW | RTLD_LOCAL)) return true;
  NSString* description = fails ? @"made to fail" : [NSString stringWithUTF8String:dlerror()];
  NSDictionary* info = [NSDictionary dictionaryWithObject:description
                                                   forKey:NSLocalizedDescriptionKey];
  NSError* failure = [[NSError alloc] initWithDomain:NSCocoaErrorDomain code:3587 userInfo:info];
  *error = static_cast<CFErrorRef>(Made(__func__, failure));
  return false;
}

CFStringRef CFErrorCopyDescription(CFErrorRef error) {
  Fails(__func__);
  const OwnPool pool;
  NSString* description = [[Object(error) localizedDescription] retain];
  return static_cast<CFStringRef>(Made(__func__, description));
}

CFIndex CFErrorGetCode(CFErrorRef error) {
  return [Object(error) code];
}

void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name) {
  Fails(__func__);
  const OwnPool pool;
  void* module = dlopen(Executable(Object(bundle)), RTLD_NOW | RTLD_LOCAL);
  return module ? dlsym(module, [Object(name) UTF8String]) : nullptr;
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
  Fails(__func__);
  return cocoaFakes.now.value_or([NSDate timeIntervalSinceReferenceDate]);
}

CFTimeZoneRef CFTimeZoneCreateWithName(CFAllocatorRef, CFStringRef name, Boolean tryAbbreviation) {
  if (Fails(__func__) || !tryAbbreviation) return nullptr;
  const OwnPool pool;
  NSTimeZone* zone = [[NSTimeZone timeZoneWithName:Object(name)] retain];
  return static_cast<CFTimeZoneRef>(Made(__func__, zone));
}

CFCalendarRef CFCalendarCreateWithIdentifier(CFAllocatorRef, CFCalendarIdentifier identifier) {
  if (Fails(__func__)) return nullptr;
  const OwnPool pool;
  NSCalendar* calendar = [[NSCalendar alloc] initWithCalendarIdentifier:Object(identifier)];
  return static_cast<CFCalendarRef>(Made(__func__, calendar));
}

void CFCalendarSetTimeZone(CFCalendarRef calendar, CFTimeZoneRef zone) {
  Fails(__func__);
  const OwnPool pool;
  [static_cast<NSCalendar*>(Object(calendar)) setTimeZone:Object(zone)];
}

Boolean CFCalendarDecomposeAbsoluteTime(CFCalendarRef calendar, CFAbsoluteTime time,
                                        const char* description, ...) {
  if (Fails(__func__) || std::strcmp(description, "yMdHmsE") != 0) return false;
  const OwnPool pool;
  NSDate* date = [NSDate dateWithTimeIntervalSinceReferenceDate:time];
  const NSUInteger units = NSYearCalendarUnit | NSMonthCalendarUnit | NSDayCalendarUnit |
                           NSHourCalendarUnit | NSMinuteCalendarUnit | NSSecondCalendarUnit |
                           NSWeekdayCalendarUnit;
  NSDateComponents* fields = [Object(calendar) components:units fromDate:date];
  va_list outputs;
  va_start(outputs, description);
  for (const NSInteger field : {[fields year],
                                [fields month],
                                [fields day],
                                [fields hour],
                                [fields minute],
                                [fields second],
                                [fields weekday]}) {
    *va_arg(outputs, int*) = static_cast<int>(field);
  }
  va_end(outputs);
  return true;
}

OSStatus UCConvertCFAbsoluteTimeToUTCDateTime(CFAbsoluteTime time, UTCDateTime* result) {
  if (Fails(__func__)) return -1;
  const double fraction = (time - std::floor(time)) * 65536;
  result->fraction = cocoaFakes.fraction.value_or(static_cast<uint16_t>(fraction));
  return noErr;
}
