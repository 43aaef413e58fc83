#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "AEProjectPathUtils.h"
#include "AE_APISuiteHandlerManager.h"
#include "FakeHost.h"
#include "Require.h"

// Input: bytes. They serve once as the host's path in UTF-16, and once as the UTF-8 of a path to
// open.

namespace {

bool IsHigh(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLow(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool HasUnpairedSurrogate(const std::u16string& text) {
  for (size_t i = 0; i < text.size(); ++i) {
    if (IsHigh(text[i]) && i + 1 < text.size() && IsLow(text[i + 1])) {
      ++i;
    } else if (IsHigh(text[i]) || IsLow(text[i])) {
      return true;
    }
  }
  return false;
}

std::u16string UpToNul(const std::u16string& text) {
  return text.substr(0, text.find(u'\0'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  AE_APISuiteHandlerManager manager(fake_host.basicSuite());
  AEProjectPathUtils utils;
  fake_host.calls.clear();

  fake_host.path.resize(size / sizeof(char16_t));
  std::memcpy(fake_host.path.data(), data, fake_host.path.size() * sizeof(char16_t));
  const std::u16string hostPath = UpToNul(fake_host.path);
  const std::string path = utils.getAfterEffectsProjectPathUTF8(&manager);
  if (HasUnpairedSurrogate(hostPath)) {
    Require(path.empty(), "a path with an unpaired surrogate counts as empty");
  } else {
    utils.openProject(&manager, path);
    Require(fake_host.openedPath == hostPath, "the host gets its own path back");
  }

  const std::string bytes(reinterpret_cast<const char*>(data), size);
  utils.openProject(&manager, bytes);
  fake_host.path = fake_host.openedPath;
  const std::string opened = utils.getAfterEffectsProjectPathUTF8(&manager);
  Require(bytes.compare(0, opened.size(), opened) == 0,
          "opening can cut the path, and changes nothing else");
  return 0;
}
