#include <CoreFoundation/CoreFoundation.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "CFOwned_Mac.h"
#include "FreshCocoaFakes.h"
#include "LoadFrameworkTest.h"
#include "PlatformStringUtils.h"
#include "TraceLog.h"
#include "VeldraneFileUtils.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

constexpr char kString[] = "CFStringCreateWithCString";
constexpr char kURL[] = "CFURLCreateWithFileSystemPath";
constexpr char kBundle[] = "CFBundleCreate";

std::vector<std::string> Owned() {
  std::vector<std::string> makers;
  for (const auto& [object, maker] : cocoaFakes.owned) makers.push_back(maker);
  return makers;
}

TEST_F(LoadFrameworkTest, KeepsOnlyTheBundleWhateverFails) {
  const auto framework = Framework(Version("1"));
  const std::pair<const char*, size_t> rows[] = {{kString, 0}, {kURL, 0}, {kBundle, 1}};
  for (const auto& [failing, count] : rows) {
    SCOPED_TRACE(failing);
    TraceLog traces;
    cocoaFakes.failing = {failing};
    EXPECT_FALSE(Load(framework));
    EXPECT_THAT(Owned(), IsEmpty());
    EXPECT_EQ(traces.lines.size(), count);
    EXPECT_STREQ(version.data(), "-------");
  }
  cocoaFakes.failing.clear();
  EXPECT_TRUE(Load(framework));
  EXPECT_THAT(Owned(), ElementsAre(kBundle));
}

TEST_F(LoadFrameworkTest, AsksWhyTheExecutableIsNotLoadedOnlyForTheTrace) {
  constexpr char kLoad[] = "CFBundleLoadExecutableAndReturnError";
  EXPECT_TRUE(Load(TAMBERLINK_FRAMEWORK));
  EXPECT_THAT(cocoaFakes.calls, Not(Contains(kLoad)));
  TraceLog traces;
  EXPECT_TRUE(Load(TAMBERLINK_FRAMEWORK));
  EXPECT_THAT(cocoaFakes.calls, Contains(kLoad).Times(1));
  EXPECT_EQ(traces.lines.size(), 1u);
  cocoaFakes.failing = {kLoad};
  EXPECT_TRUE(Load(TAMBERLINK_FRAMEWORK));
  EXPECT_EQ(traces.lines.back(), "It can't be loaded: made to fail (3587)");
  EXPECT_THAT(Owned(), ElementsAre(kBundle, kBundle, kBundle));
}

TEST_F(LoadFrameworkTest, WritesWhereItFoundNoBundle) {
  TraceLog traces;
  EXPECT_FALSE(Load(folder.path() / "nowhere"));
  EXPECT_THAT(traces.lines, ElementsAre("CFBundleCreate() returned 0x00000000 on attempt to load "
                                        "plug-in interface from '" +
                                        (folder.path() / "nowhere").string() + "'"));
  // Not UTF-8.
  EXPECT_FALSE(Load("\xFF"));
}

TEST_F(LoadFrameworkTest, WritesTheAddressesOfExports) {
  void* bundle = Load(TAMBERLINK_FRAMEWORK);
  ASSERT_NE(bundle, nullptr);
  TraceLog traces;
  GetFunctionPtr(bundle, "PluginIsEnabled");
  GetFunctionPtr(bundle, "pluginIsEnabled");
  EXPECT_THAT(traces.lines,
              ElementsAre(MatchesRegex("CFBundleGetFunctionPointerForName\\(0x[0-9a-f]{8}, "
                                       "'PluginIsEnabled'\\) returned 0x[0-9a-f]{8}"),
                          HasSubstr("'pluginIsEnabled') returned 0x00000000")));
  cocoaFakes.calls.clear();
  traces.lines.clear();
  GetFunctionPtr(nullptr, "PluginIsEnabled");
  EXPECT_THAT(cocoaFakes.calls, IsEmpty());
  cocoaFakes.failing = {kString};
  EXPECT_EQ(GetFunctionPtr(bundle, "PluginIsEnabled"), nullptr);
  EXPECT_THAT(traces.lines, IsEmpty());
  EXPECT_THAT(Owned(), ElementsAre(kBundle));
}

TEST(GetStdString, IsEmptyForAllButText) {
  const auto convert = [](const char* text) {
    const CFOwned<CFStringRef> object(
        CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingUTF8));
    return GetStdString(object.get());
  };
  EXPECT_EQ(convert("zwölf 日本 😀"), "zwölf 日本 😀");
  EXPECT_EQ(convert(""), "");
  EXPECT_EQ(GetStdString(nullptr), "");
  cocoaFakes.failing = {"CFStringGetCString"};
  EXPECT_EQ(convert("text"), "");
}

TEST(GetFileModificationDate, CutsTheFractionOffInTheEpochOfThePlatform) {
  TemporaryFolder folder;
  const auto file = folder.Write("a.aep", "");
  // Half a second before and after the platform's epoch, 2001.
  for (const time_t second : {978307199, 978307200}) {
    const timespec date = {second, 500'000'000};
    const timespec both[] = {date, date};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), both, 0), 0);
    EXPECT_EQ(VeldraneFileUtils::GetFileModificationDate(file.c_str()), 978307200);
  }
}

TEST(GetFileModificationDate, KeepsNothingWhateverFails) {
  TemporaryFolder folder;
  const auto file = folder.Write("a.aep", "");
  for (const char* failing : {kString, kURL, "CFURLCopyResourcePropertyForKey"}) {
    cocoaFakes.failing = {failing};
    EXPECT_EQ(VeldraneFileUtils::GetFileModificationDate(file.c_str()), 0) << failing;
    EXPECT_THAT(Owned(), IsEmpty()) << failing;
  }
  cocoaFakes.failing.clear();
  EXPECT_NE(VeldraneFileUtils::GetFileModificationDate(file.c_str()), 0);
  EXPECT_THAT(Owned(), IsEmpty());
}

}  // namespace
