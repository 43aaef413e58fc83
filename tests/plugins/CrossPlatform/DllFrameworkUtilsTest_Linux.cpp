#include "DllFrameworkUtils.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <array>
#include <cstdlib>

#include "PlatformStringUtils.h"
#include "TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

const fs::path kModule = fs::path(FONT_MANAGER) / "Tamberlink.framework/Tamberlink";
constexpr unsigned int kVersionSize = 8;

class LoadFrameworkTest : public testing::Test {
 protected:
  // Writes a framework whose `Info.plist` has these keys, and the module under that name.
  fs::path Framework(const std::string& module, plist_t info, bool binary = false) {
    char* text = nullptr;
    uint32_t length = 0;
    (binary ? plist_to_bin : plist_to_xml)(info, &text, &length);
    const auto file = folder.Write("F.framework/Info.plist", std::string_view(text, length));
    std::free(text);
    plist_free(info);
    fs::copy_file(kModule, file.parent_path() / module);
    return file.parent_path();
  }

  bool Loads(const fs::path& path) {
    version.fill('-');
    version.back() = '\0';
    return LoadDllOrFramework(path.c_str(), version.data(), kVersionSize) != nullptr;
  }

  static plist_t Info(const char* executable, const std::string& version) {
    plist_t info = plist_new_dict();
    if (executable) plist_dict_set_item(info, "CFBundleExecutable", plist_new_string(executable));
    if (!version.empty()) {
      plist_dict_set_item(info, "CFBundleShortVersionString", plist_new_string(version.c_str()));
    }
    return info;
  }

  TemporaryFolder folder;
  std::array<char, kVersionSize> version{};
};

TEST_F(LoadFrameworkTest, ReadsTheVersionFromXmlAndBinary) {
  for (const bool binary : {false, true}) {
    // A module that is loaded must not be written over.
    const char* name = binary ? "Binary" : "Xml";
    EXPECT_TRUE(Loads(Framework(name, Info(name, "1.2"), binary)));
    EXPECT_STREQ(version.data(), "1.2");
  }
}

TEST_F(LoadFrameworkTest, CutsALongVersion) {
  EXPECT_TRUE(Loads(Framework("F", Info(nullptr, "12345678901234"))));
  EXPECT_STREQ(version.data(), "1234567");
}

TEST_F(LoadFrameworkTest, LeavesTheVersionAloneWhereThereIsNone) {
  EXPECT_TRUE(Loads(Framework("F", Info(nullptr, ""))));
  EXPECT_STREQ(version.data(), "-------");
  EXPECT_TRUE(Loads(kModule));
  EXPECT_STREQ(version.data(), "-------");
}

TEST_F(LoadFrameworkTest, GivesNullForWhatIsNoFramework) {
  EXPECT_FALSE(Loads(folder.path() / "nowhere"));
  EXPECT_FALSE(Loads(folder.path()));
  EXPECT_FALSE(Loads(folder.Write("file", "text")));
  EXPECT_FALSE(Loads(Framework("F", Info("Other", "1"))));
  folder.Write("F.framework/Info.plist", "no property list");
  EXPECT_TRUE(Loads(folder.path() / "F.framework/"));
  fs::remove(folder.path() / "F.framework/Info.plist");
  fs::create_directory(folder.path() / "F.framework/Info.plist");
  EXPECT_TRUE(Loads(folder.path() / "F.framework"));
}

TEST_F(LoadFrameworkTest, TakesTheModuleFromWithinTheFrameworkOnly) {
  // A library that is there, by its whole path.
  EXPECT_FALSE(Loads(Framework("F", Info("/lib/x86_64-linux-gnu/libm.so.6", "1"))));
}

TEST_F(LoadFrameworkTest, TakesARelativePathFromTheWorkingDirectoryAlone) {
  Framework("F", Info(nullptr, "1"));
  fs::current_path(folder.path());
  EXPECT_TRUE(Loads("F.framework"));
  // On the library path there is one of that name.
  EXPECT_FALSE(Loads("libc.so.6"));
}

TEST(GetFunctionPtr, FindsExportsByName) {
  std::array<char, kVersionSize> version{};
  void* bundle = LoadDllOrFramework(kModule.c_str(), version.data(), kVersionSize);
  ASSERT_NE(bundle, nullptr);
  EXPECT_NE(GetFunctionPtr(bundle, "PluginIsEnabled"), nullptr);
  EXPECT_EQ(GetFunctionPtr(bundle, "pluginIsEnabled"), nullptr);
  EXPECT_EQ(GetFunctionPtr(nullptr, "PluginIsEnabled"), nullptr);
}

TEST(GetStdString, IsEmptyForAllButText) {
  const auto convert = [](plist_t node) {
    const std::string text = GetStdString(static_cast<const __CFString*>(node));
    plist_free(node);
    return text;
  };
  EXPECT_EQ(convert(plist_new_string("zwölf")), "zwölf");
  EXPECT_EQ(convert(plist_new_string("")), "");
  EXPECT_EQ(convert(plist_new_bool(1)), "");
  EXPECT_EQ(convert(plist_new_string("\xFF\xFE")), "");
  EXPECT_EQ(GetStdString(nullptr), "");
}

}  // namespace
