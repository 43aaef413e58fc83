#import <Foundation/Foundation.h>

#include "CocoaException_Mac.h"
#include "PathRewriting.h"

namespace {

/// One call of `OSRewritePath`, as it is handed through a function without C++.
struct Rewriting {
  const char* bytes;
  PathEncoding encoding;
  PathRewriting result{PathRewriting::Outcome::kNotText, {}};
  NSString* text = nil;

  Rewriting(const char* pathBytes, PathEncoding pathEncoding)
      : bytes(pathBytes), encoding(pathEncoding) {}
  ~Rewriting() { [text release]; }
  Rewriting(const Rewriting&) = delete;
  Rewriting& operator=(const Rewriting&) = delete;

  void Run() {
    text = encoding == PathEncoding::kUTF8
               ? [[NSString alloc] initWithUTF8String:bytes]
               : [[NSString alloc] initWithCString:bytes encoding:NSMacOSRomanStringEncoding];
    if (!text) return;
    result.text = [[text stringByExpandingTildeInPath] fileSystemRepresentation];
    result.outcome = PathRewriting::Outcome::kRewritten;
  }
};

}  // namespace

PathRewriting OSRewritePath(const char* bytes, PathEncoding encoding) {
  Rewriting rewriting(bytes, encoding);
  const id exception = CocoaExceptionRaisedBy(
      [](void* context) { static_cast<Rewriting*>(context)->Run(); }, &rewriting);
  if (!exception) return rewriting.result;
  const char* description = [[exception description] UTF8String];
  return {PathRewriting::Outcome::kFailed, description ? description : ""};
}
