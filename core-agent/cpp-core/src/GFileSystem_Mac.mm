// The Cocoa half. What POSIX is enough for is in GFileSystem_Mac.cpp.
#import <Foundation/Foundation.h>

#include "CocoaException_Mac.h"
#include "PathText.h"

namespace {

PathText Owned(NSString* text) {
  return {text, [](NSString* released) { [released release]; }};
}

}  // namespace

PathText OSTextFromUTF8(const char* bytes) {
  return Owned([[NSString alloc] initWithUTF8String:bytes]);
}

PathText OSTextFromMacOSRoman(const char* bytes) {
  return Owned([[NSString alloc] initWithCString:bytes encoding:NSMacOSRomanStringEncoding]);
}

std::string OSExpandTilde(const PathText& text) {
  NSString* const path = static_cast<NSString*>(const_cast<void*>(text.get()));
  return [[path stringByExpandingTildeInPath] fileSystemRepresentation];
}

std::optional<std::string> OSExceptionRaisedBy(const std::function<void()>& work) {
  const id exception = CocoaExceptionRaisedBy(
      [](void* context) { (*static_cast<const std::function<void()>*>(context))(); },
      const_cast<std::function<void()>*>(&work));
  if (!exception) return std::nullopt;
  const char* const description = [[exception description] UTF8String];
  return description ? description : "";
}
