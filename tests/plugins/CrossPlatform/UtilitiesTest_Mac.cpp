#include <CoreFoundation/CoreFoundation.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "CFOwned_Mac.h"
#include "CocoaFakes.h"
#include "LoadFrameworkTest.h"
#include "PlatformStringUtils.h"
#include "TraceLog.h"
#include "VeldraneFileUtils.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

constexpr char kString[] = "CFStringCreateWithCString";
constexpr char kURL[] = "CFURLCreateWithFileSystemPath";
constexpr char kBundle[] = "CFBundleCreate";
constexpr char kVersion[] = "CFBundleGetValueForInfoDictionaryKey";

std::string Released(const char* maker) {
  return "CFRelease " + std::string(maker);
}

TEST_F(LoadFrameworkTest, AsksThePlatformInOrderAndKeepsTheBundle) {
  EXPECT_TRUE(Load(Framework("")));
  EXPECT_THAT(cocoaFakes.calls,
              ElementsAre(kString, kURL, kBundle, Released(kURL), Released(kString), kVersion));
  ASSERT_EQ(cocoaFakes.owned.size(), 1u);
  EXPECT_EQ(cocoaFakes.owned[0].second, kBundle);
}

TEST_F(LoadFrameworkTest, ReleasesWhatItMadeWhereThePlatformFails) {
  const auto framework = Framework(Version("1"));
  const struct {
    const char* failing;
    std::vector<std::string> calls;
    size_t traces;
  } cases[] = {{kString, {kString}, 0},
               {kURL, {kString, kURL, Released(kString)}, 0},
               {kBundle, {kString, kURL, kBundle, Released(kURL), Released(kString)}, 1}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.failing);
    TraceLog traces;
    cocoaFakes.failing = {row.failing};
    EXPECT_FALSE(Load(framework));
    EXPECT_EQ(cocoaFakes.TakeCalls(), row.calls);
    EXPECT_EQ(traces.lines.size(), row.traces);
    EXPECT_STREQ(version.data(), "-------");
  }
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
  // The bundle.
  EXPECT_EQ(cocoaFakes.owned.size(), 1u);
}

TEST(GetStdString, IsEmptyForAllButText) {
  const auto convert = [](const char* text) {
    const CFOwned<CFStringRef> object(
        CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingUTF8));
    return GetStdString(object.get());
  };
  EXPECT_EQ(convert("zwölf 日本 😀"), "zwölf 日本 😀");
  cocoaFakes.calls.clear();
  EXPECT_EQ(convert(""), "");
  EXPECT_THAT(cocoaFakes.calls, ElementsAre(kString, Released(kString)));
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

TEST(GetFileModificationDate, ReleasesWhatItMadeInReverseOrder) {
  TemporaryFolder folder;
  const auto file = folder.Write("a.aep", "");
  constexpr char kDate[] = "CFURLCopyResourcePropertyForKey";
  const struct {
    const char* failing;
    std::vector<std::string> calls;
  } cases[] = {{kString, {kString}},
               {kURL, {kString, kURL, Released(kString)}},
               {kDate, {kString, kURL, kDate, Released(kURL), Released(kString)}}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.failing);
    cocoaFakes.failing = {row.failing};
    EXPECT_EQ(VeldraneFileUtils::GetFileModificationDate(file.c_str()), 0);
    EXPECT_EQ(cocoaFakes.TakeCalls(), row.calls);
  }
  cocoaFakes.failing.clear();
  EXPECT_NE(VeldraneFileUtils::GetFileModificationDate(file.c_str()), 0);
  EXPECT_THAT(cocoaFakes.calls, ElementsAre(kString, kURL, kDate, Released(kDate), Released(kURL),
                                            Released(kString)));
}

}  // namespace
