#include <sys/stat.h>
#include <utf8.h>

#include <string_view>

#include "VeldraneFileUtils.h"

int64_t VeldraneFileUtils::GetFileModificationDate(const char* path) {
  if (!utf8::is_valid(std::string_view(path))) return 0;
  struct stat status;
  return stat(path, &status) == 0 ? status.st_mtime : 0;
}
