#include "TBKLoader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AfterEachTest.h"
#include "DllFrameworkUtils.h"
#include "FakeTamberlink.h"
#include "TemporaryFolder.h"
#include "TraceLog.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kFontManager = FONT_MANAGER;

const bool kUnloads = AfterEachTest(
    [] { delete TBKLoader::GetThisSharedInstance(kFontManager + "/Tamberlink.framework"); });

TEST(TBKLoader, FillsTheTableFromAFullFramework) {
  TBKLoader* loader = TBKLoader::GetThisSharedInstance(kFontManager + "/Tamberlink.framework");
  ASSERT_NE(loader, nullptr);
  EXPECT_EQ(loader->missingFunctionCount, 0);
  EXPECT_EQ(loader->frameworkPath, kFontManager + "/Tamberlink.framework");
  EXPECT_NE(loader->frameworkVersion, "");
  EXPECT_EQ(TBKLoader::GetSharedInstance(), loader);
  TraceLog traces;
  EXPECT_TRUE(loader->VerifyThatAllMembersAre(true));
  EXPECT_THAT(traces.lines, IsEmpty());

  EXPECT_EQ(TBKLoader::GetThisSharedInstance("/elsewhere"), loader);
  EXPECT_THAT(traces.lines, IsEmpty());

  delete loader;
  EXPECT_EQ(TBKLoader::GetThisSharedInstance("/elsewhere"), nullptr);
}

TEST(TBKLoader, KeepsTheFirst1023BytesOfAVersion) {
  const std::string version(1024, '7');
  TemporaryFolder folder;
  folder.Write("F.framework/Info.plist",
               R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)"
               "<key>CFBundleShortVersionString</key><string>" +
                   version + "</string></dict></plist>");
  std::filesystem::copy_file(kFontManager + "/Tamberlink.framework/Tamberlink",
                             folder.path() / "F.framework/F");
  const TBKLoader* loader = TBKLoader::GetThisSharedInstance(folder.path() / "F.framework");
  ASSERT_NE(loader, nullptr);
  EXPECT_EQ(loader->frameworkVersion, version.substr(1));
}

TEST(TBKLoader, CountsWhatAFrameworkLacks) {
  TBKLoader* loader = TBKLoader::GetThisSharedInstance(
      kFontManager + "/without-ShouldShowLogin/Tamberlink.framework");
  ASSERT_NE(loader, nullptr);
  EXPECT_EQ(loader->missingFunctionCount, 1);
  EXPECT_EQ(loader->pfShouldShowLogin, nullptr);
  bool show = true;
  TraceLog traces;
  EXPECT_EQ(CallTamberlink(&TBKLoader::pfShouldShowLogin, &show), CoreErrorCodes::kNotImplemented);
  EXPECT_TRUE(show);
  EXPECT_THAT(traces.lines, ElementsAre("ShouldShowLogin(true) returned "
                                        "CoreErrorCodes::kNotImplemented (0x08000000)"));
  // It passes over the last two members.
  EXPECT_TRUE(loader->VerifyThatAllMembersAre(true));
}

TEST(TBKLoader, TracesTheMembersThatArentAsStated) {
  TBKLoader* loader = TBKLoader::GetThisSharedInstance(kFontManager + "/Tamberlink.framework");
  ASSERT_NE(loader, nullptr);
  const auto save = loader->pfHandleSaveDocument;
  TBKLoader::ResetFunctionPointers(loader, nullptr);
  TraceLog traces;
  EXPECT_TRUE(loader->VerifyThatAllMembersAre(false));
  EXPECT_FALSE(loader->VerifyThatAllMembersAre(true));
  ASSERT_EQ(traces.lines.size(), 24u);
  EXPECT_EQ(traces.lines.front(), "ERROR:  this->pfActivateChosenFonts is NULL.");
  EXPECT_EQ(traces.lines.back(), "ERROR:  this->pfSetRebuildWorkgroupsMenuCallback is NULL.");
  loader->pfHandleSaveDocument = save;
  traces.lines.clear();
  EXPECT_FALSE(loader->VerifyThatAllMembersAre(false));
  EXPECT_THAT(traces.lines, ElementsAre("ERROR:  this->pfHandleSaveDocument is not NULL."));
}

TEST(TBKLoader, TracesEachCallAndOfAPollOnlyNews) {
  fake_tamberlink.Install();
  TraceLog traces;
  bool enabled = false;
  for (const bool answer : {true, true, false}) {
    fake_tamberlink.enabled = answer;
    AskWhetherPluginIsEnabled(false, &enabled);
  }
  TamberlinkDocumentId id{};
  for (int save = 0; save < 2; ++save) {
    CallTamberlink(&TBKLoader::pfHandleSaveDocument, "/a.aep", id.data());
  }
  const std::string success = " returned CoreErrorCodes::kSuccess (0x00000000)";
  EXPECT_THAT(traces.lines, ElementsAre("PluginIsEnabled(false, true)" + success,
                                        "PluginIsEnabled(false, false)" + success,
                                        "HandleSaveDocument('/a.aep', ...)" + success,
                                        "HandleSaveDocument('/a.aep', ...)" + success));
}

// A dialog of the framework lets the host call hooks, which may replace the caller's text.
TEST(TBKLoader, ATextStaysAsItIsDuringTheCall) {
  static std::string path;
  path = "/a/path/too/long/for/the/string/itself.aep";
  fake_tamberlink.Install();
  TBKLoader::GetSharedInstance()->pfHandleSaveDocument = [](const char* text, char*) {
    const std::string before = text;
    path = std::string(1000, 'x');
    return before == text ? 0u : 1u;
  };
  TraceLog traces;
  TamberlinkDocumentId id{};
  EXPECT_EQ(CallTamberlink(&TBKLoader::pfHandleSaveDocument, path, id.data()), 0u);
  EXPECT_THAT(traces.lines, ElementsAre(StartsWith("HandleSaveDocument('/a/path/too/long/")));
}

TEST(TBKLoader, AFailedSearchIsMadeAgain) {
  TemporaryFolder folder;
  std::filesystem::current_path(folder.path());
  setenv("HOME", folder.path().c_str(), 1);
  TraceLog traces;
  EXPECT_EQ(TBKLoader::GetSharedInstance(), nullptr);
  // Only Linux has a reason for what isn't there.
  std::erase_if(traces.lines, [](const auto& line) { return line.starts_with("  It can't be"); });
  EXPECT_THAT(
      traces.lines,
      ElementsAre("Entering first call to GetSharedInstance()",
                  "  No running process is named 'Oxbrim'", StartsWith("  Launch-info file '"),
                  "  CFBundleCreate() returned 0x00000000 on attempt to load plug-in interface "
                  "from 'Tamberlink.framework'",
                  "  ERROR:  cannot find Tamberlink.framework",
                  "Exiting first call to GetSharedInstance(); sSharedInstance=0x00000000"));
  uint32_t result = CallTamberlink(&TBKLoader::pfTerminateTamberlinkInterface);
  EXPECT_EQ(result, CoreErrorCodes::kNotImplemented);

  std::filesystem::create_directory_symlink(kFontManager + "/Tamberlink.framework",
                                            folder.path() / "Tamberlink.framework");
  traces.lines.clear();
  EXPECT_NE(TBKLoader::GetSharedInstance(), nullptr);
  EXPECT_THAT(traces.lines, Contains("  Loaded Tamberlink.framework"));
  EXPECT_THAT(traces.lines, Contains("  Its version is '2.0', and it lacks 0 exports"));
}

// Searches, and returns the path that it tried to load.
std::string SearchedPath() {
  TraceLog traces;
  EXPECT_EQ(TBKLoader::GetSharedInstance(), nullptr);
  const std::string attempt =
      *std::find_if(traces.lines.begin(), traces.lines.end(),
                    [](const std::string& line) { return line.starts_with("  CFBundleCreate"); });
  const size_t start = attempt.find('\'') + 1;
  return attempt.substr(start, attempt.rfind('\'') - start);
}

TEST(TBKLoader, TheLaunchInfoFileNamesTheFolder) {
  TemporaryFolder folder;
  std::filesystem::current_path(folder.path());
  setenv("HOME", folder.path().c_str(), 1);
  // A regular file in the framework's place is taken, and can't be loaded.
  const std::string core = folder.Write("Core/Tamberlink.framework", "text").parent_path().string();
  // A directory isn't.
  std::filesystem::create_directories(folder.path() / "Full/Tamberlink.framework");
  const std::string full = (folder.path() / "Full/").string();
  const std::string bare = "Tamberlink.framework";
  const std::pair<std::string, std::string> cases[] = {
      {"oxbrim.path=/Apps/Core/Oxbrim\n", "/Apps/Core/PluginFiles/" + bare},
      {"oxbrim.path=/Apps/Core/Oxbrim\r\n", "/Apps/Core/PluginFiles/" + bare},
      {"oxbrim.path=C:\\Apps\\Oxbrim", "C:\\Apps\\PluginFiles\\" + bare},
      {"oxbrim.path=/a\\b", "/a\\PluginFiles\\" + bare},
      {"oxbrim.path=Oxbrim", "OxbrimPluginFilesm" + bare},
      {"oxbrim.path=" + core + "/Oxbrim", core + "/" + bare},
      {"oxbrim.path=" + full + "Oxbrim", full + "PluginFiles/" + bare},
      {"oxbrim.path=\n", bare},
      {"oxbrim.path\n", bare},
      {"", bare}};
  for (const auto& [file, path] : cases) {
    folder.Write("Library/Veldrane/com.veldrane.Oxbrim-LaunchInfo.conf", file);
    EXPECT_EQ(SearchedPath(), path) << file;
  }
}

}  // namespace
