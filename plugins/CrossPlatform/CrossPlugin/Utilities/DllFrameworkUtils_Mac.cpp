#include <CoreFoundation/CoreFoundation.h>

#include <cstring>

#include "CFOwned_Mac.h"
#include "DebugUtils.h"
#include "DllFrameworkUtils.h"
#include "PlatformStringUtils.h"

namespace {

// Nobody releases the bundle, so the framework stays loaded.
CFBundleRef OpenBundle(const char* path) {
  const CFOwned<CFStringRef> text(CFStringCreateWithCString(nullptr, path, kCFStringEncodingUTF8));
  if (!text) return nullptr;
  const CFOwned<CFURLRef> url(
      CFURLCreateWithFileSystemPath(kCFAllocatorDefault, text.get(), kCFURLPOSIXPathStyle, true));
  if (!url) return nullptr;
  const CFBundleRef bundle = CFBundleCreate(kCFAllocatorDefault, url.get());
  TraceFrameworkOpened(bundle, path);
  return bundle;
}

// The look-ups would load the executable without a word about a failure.
void TraceLoading(CFBundleRef bundle) {
  CFErrorRef failure = nullptr;
  if (CFBundleLoadExecutableAndReturnError(bundle, &failure)) return;
  const CFOwned<CFErrorRef> error(failure);
  const CFOwned<CFStringRef> description(error ? CFErrorCopyDescription(error.get()) : nullptr);
  OutputIndentedAndFormattedString(0, "It can't be loaded: %s (%ld)",
                                   GetStdString(description.get()).c_str(),
                                   error ? CFErrorGetCode(error.get()) : 0);
}

}  // namespace

void* LoadDllOrFramework(const char* path, char* versionOut, unsigned int versionOutSize) {
  const CFBundleRef bundle = OpenBundle(path);
  if (!bundle) return nullptr;
  if (TraceIsOn()) TraceLoading(bundle);
  const CFTypeRef version =
      CFBundleGetValueForInfoDictionaryKey(bundle, CFSTR("CFBundleShortVersionString"));
  // The list's author may have put a number here.
  if (version && CFGetTypeID(version) == CFStringGetTypeID()) {
    const auto text = static_cast<CFStringRef>(version);
    strlcpy(versionOut, GetStdString(text).c_str(), versionOutSize);
  }
  return bundle;
}

void* GetFunctionPtr(void* bundle, const char* name) {
  if (!bundle) return nullptr;
  const CFOwned<CFStringRef> text(CFStringCreateWithCString(nullptr, name, kCFStringEncodingUTF8));
  if (!text) return nullptr;
  void* function = CFBundleGetFunctionPointerForName(static_cast<CFBundleRef>(bundle), text.get());
  TraceExportLookedUp(bundle, name, function);
  return function;
}
