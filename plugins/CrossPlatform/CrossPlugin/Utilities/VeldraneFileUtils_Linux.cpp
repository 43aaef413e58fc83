#include <sys/stat.h>
#include <utf8.h>

#include <string_view>

#include "VeldraneFileUtils.h"

int64_t VeldraneFileUtils::GetFileModificationDate(const char* path) {
  const std::string_view text(path);
  if (!utf8::is_valid(text.begin(), text.end())) return 0;
  struct stat status {};
  return stat(path, &status) == 0 ? status.st_mtime : 0;
}
