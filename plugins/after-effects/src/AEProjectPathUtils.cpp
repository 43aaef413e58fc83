#include "AEProjectPathUtils.h"

#include <utf8.h>

#include <iterator>
#include <vector>

#include "AE_APISuiteHandlerManagerInterface.h"

namespace {

// Throws `utf8::invalid_utf16` at an unpaired surrogate.
std::string createUTF8StringFromA_UTF16String(unsigned short* text) {
  if (!text) return {};
  unsigned short* end = text;
  unsigned int bits = 0;
  while (*end != 0) bits |= *end++;
  // Runs on every tick, and most paths are ASCII, where a unit is a byte.
  if (bits < 0x80) return {text, end};
  constexpr size_t kMaxBytesPerUnit = 3;
  std::string bytes(kMaxBytesPerUnit * static_cast<size_t>(end - text), '\0');
  bytes.erase(utf8::utf16to8(text, end, bytes.begin()), bytes.end());
  return bytes;
}

}  // namespace

std::string AEProjectPathUtils::getAfterEffectsProjectPathUTF8(
    AE_APISuiteHandlerManagerInterface* manager) {
  std::string path;
  _AEGP_Project** project = manager->getProjectByIndex(0);
  if (!project) return path;
  _Up_OpaqueMem** memH = manager->getProjectPathMemHandle(project);
  if (!memH) return path;
  unsigned short* text = manager->getLockedUTF16StringStart(memH);
  try {
    path = createUTF8StringFromA_UTF16String(text);
  } catch (const utf8::invalid_utf16&) {
    // No file has such a path, so take it for none.
  }
  manager->unlockMemHandle(memH);
  manager->freeMemHandle(memH);
  return path;
}

bool AEProjectPathUtils::isAfterEffectsProjectDirty(AE_APISuiteHandlerManagerInterface* manager) {
  _AEGP_Project** project = manager->getProjectByIndex(0);
  return project && manager->isProjectDirty(project);
}

uint32_t AEProjectPathUtils::openProject(AE_APISuiteHandlerManagerInterface* manager,
                                         std::string path) {
  std::vector<unsigned short> text;
  utf8::utf8to16(path.begin(), utf8::find_invalid(path.begin(), path.end()),
                 std::back_inserter(text));
  text.push_back(0);
  return static_cast<uint32_t>(manager->openProjectFromUTF16Path(text.data()));
}
