// The part of the macOS half that needs Cocoa. The other part is in GFileSystem_Mac.cpp.
#import <Foundation/Foundation.h>

#include "CocoaException_Mac.h"
#include "GFileSystemPlatform.h"

namespace {

struct Work {
  const char* bytes;
  PathEncoding encoding;
  PathExpansion expansion;
};

NSString* NewText(const char* bytes, PathEncoding encoding) {
  if (encoding == PathEncoding::kUTF8) return [[NSString alloc] initWithUTF8String:bytes];
  return [[NSString alloc] initWithCString:bytes encoding:NSMacOSRomanStringEncoding];
}

void Expand(void* context) {
  auto& [bytes, encoding, expansion] = *static_cast<Work*>(context);
  NSString* const text = [NewText(bytes, encoding) autorelease];
  if (!text) return;
  const char* const path = [[text stringByExpandingTildeInPath] fileSystemRepresentation];
  expansion = path ? PathExpansion{PathExpansion::kExpanded, path}
                   : PathExpansion{PathExpansion::kFailed, "No file system representation"};
}

}  // namespace

PathExpansion OSExpandTilde(const char* bytes, PathEncoding encoding) {
  Work work = {bytes, encoding, {}};
  const id exception = RunCatchingCocoaException(Expand, &work);
  if (!exception) return work.expansion;
  const char* const description = [[exception description] UTF8String];
  return {PathExpansion::kFailed, description ? description : ""};
}
