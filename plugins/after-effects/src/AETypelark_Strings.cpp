#include "AETypelark_Strings.h"

#include <cstdint>

namespace {

struct TableString {
  uint64_t id;
  char text[256];
};

constexpr TableString g_strs[] = {
    {kStringNone, ""},
    {kStringMenuItem, "Veldrane..."},
    {kStringAbout, "Activates the fonts of a project when it opens."},
    {kStringStartFailed, "Error enabling After Effects Typelark."},
};

}  // namespace

const char* GetStringPtr(int row) {
  return g_strs[row].text;
}
