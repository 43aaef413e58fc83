#include <sys/stat.h>
#include <utf8.h>

#include <string_view>

#include "VeldraneFileUtils.h"

namespace {

// Tests for ASCII first: this runs on every tick, and most paths are ASCII.
bool IsUTF8(std::string_view text) {
  unsigned char bits = 0;
  for (const char byte : text) bits |= static_cast<unsigned char>(byte);
  return bits < 0x80 || utf8::is_valid(text.begin(), text.end());
}

}  // namespace

int64_t VeldraneFileUtils::GetFileModificationDate(const char* path) {
  if (!IsUTF8(path)) return 0;
  struct stat status;
  return stat(path, &status) == 0 ? status.st_mtime : 0;
}
