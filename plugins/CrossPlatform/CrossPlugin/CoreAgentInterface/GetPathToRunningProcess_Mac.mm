#import <AppKit/AppKit.h>

#include <fstream>

#include "AutoreleaseScope.h"
#include "CoreErrorCodes.h"
#include "GetPathToRunningProcess.h"
#include "ProcessLocation.h"

namespace {

// Leaves `directory` unchanged when the platform names none.
void GetUsersAppDataDirectory(std::string& directory) {
  const AutoreleaseScope scope;
  NSArray* directories =
      NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, YES);
  if (directories) directory = [[directories objectAtIndex:0] fileSystemRepresentation];
}

}  // namespace

uint32_t GetPathToRunningProcessExe(const std::string& processName, std::string& folder) {
  const AutoreleaseScope scope;
  NSArray* applications = [[NSWorkspace sharedWorkspace] runningApplications];
  const NSUInteger count = [applications count];
  for (NSUInteger index = 0; index < count; ++index) {
    NSRunningApplication* application = [applications objectAtIndex:index];
    const char* executable = [[[application executableURL] path] UTF8String];
    // An application may have none.
    if (executable && GetFolderIfExecutableIs(processName, executable, folder)) {
      return CoreErrorCodes::kSuccess;
    }
  }
  return CoreErrorCodes::kUnknownError;
}

uint32_t GetConfiguredPath(const std::string& folderName, const std::string& fileName,
                           const std::string& key, std::string& value) {
  const AutoreleaseScope scope;
  std::string path;
  GetUsersAppDataDirectory(path);
  path += "/" + folderName + "/" + fileName;
  NSString* text = [NSString stringWithUTF8String:path.c_str()];
  if (!text || ![[NSFileManager defaultManager] fileExistsAtPath:text]) {
    return CoreErrorCodes::kUnknownError;
  }
  std::ifstream stream(path, std::ios::binary);
  return ReadConfiguredValue(stream, key, value) ? CoreErrorCodes::kSuccess
                                                 : CoreErrorCodes::kUnknownError;
}
