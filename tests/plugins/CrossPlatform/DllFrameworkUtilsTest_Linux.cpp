#include <plist/plist.h>

#include <cstdlib>

#include "LoadFrameworkTest.h"
#include "PlatformStringUtils.h"

namespace {

namespace fs = std::filesystem;

TEST_F(LoadFrameworkTest, ReadsTheVersionAlsoFromABinaryList) {
  const fs::path framework = Framework("");
  plist_t info = plist_new_dict();
  plist_dict_set_item(info, "CFBundleShortVersionString", plist_new_string("1.2"));
  char* data = nullptr;
  uint32_t size = 0;
  plist_to_bin(info, &data, &size);
  folder.Write(framework.filename() / "Info.plist", std::string_view(data, size));
  std::free(data);
  plist_free(info);
  EXPECT_TRUE(Load(framework));
  EXPECT_STREQ(version.data(), "1.2");
}

TEST_F(LoadFrameworkTest, LoadsWithoutAReadableList) {
  const fs::path framework = Framework(""), list = framework / "Info.plist";
  folder.Write(list, "no property list");
  EXPECT_TRUE(Load(framework / ""));
  fs::remove(list);
  fs::create_directory(list);
  EXPECT_TRUE(Load(framework));
  // A module without a framework.
  EXPECT_TRUE(Load(TAMBERLINK_FRAMEWORK "/Tamberlink"));
  EXPECT_STREQ(version.data(), "-------");
}

TEST_F(LoadFrameworkTest, TakesTheModuleFromWithinTheFrameworkOnly) {
  EXPECT_FALSE(Load(folder.path()));
  const fs::path outside = folder.path() / "Outside";
  fs::copy_file(TAMBERLINK_FRAMEWORK "/Tamberlink", outside);
  EXPECT_TRUE(Load(outside));
  for (const std::string& name :
       {std::string("Other"), std::string("../Outside"), outside.string()}) {
    EXPECT_FALSE(Load(Framework("<key>CFBundleExecutable</key><string>" + name + "</string>")))
        << name;
  }
}

TEST_F(LoadFrameworkTest, TakesARelativePathFromTheWorkingDirectoryAlone) {
  const fs::path framework = Framework("");
  fs::current_path(folder.path());
  EXPECT_TRUE(Load(framework.filename()));
  // There is such a file on the library path.
  EXPECT_FALSE(Load("libc.so.6"));
}

TEST(GetStdString, IsEmptyForAllButText) {
  const auto convert = [](plist_t node) {
    const std::string text = GetStdString(static_cast<const __CFString*>(node));
    plist_free(node);
    return text;
  };
  EXPECT_EQ(convert(plist_new_string("zwölf")), "zwölf");
  EXPECT_EQ(convert(plist_new_string("")), "");
  EXPECT_EQ(convert(plist_new_string("\xFF\xFE")), "");
  EXPECT_EQ(convert(plist_new_uint(5)), "");
  EXPECT_EQ(GetStdString(nullptr), "");
}

}  // namespace
