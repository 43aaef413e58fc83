#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

namespace {

using Names = std::set<std::string>;

Names exportsOf(const std::string& folder) {
  const std::string module = FONT_MANAGER "/" + folder + "Tamberlink.framework/Tamberlink";
  FILE* const output =
      popen((NM " -D --defined-only --format=posix '" + module + "'").c_str(), "r");
  Names names;
  for (char line[512]; fgets(line, sizeof line, output) != nullptr;) {
    names.insert(std::string(line).substr(0, std::string(line).find(' ')));
  }
  EXPECT_EQ(pclose(output), 0) << module;
  return names;
}

TEST(TamberlinkFramework, ExportsWhatCallersLookUpAndNothingElse) {
  std::istringstream names(
      "ActivateChosenFonts CreateMenusFromJSONBuffer GetAPIVersion GetIDForDocument GetMenus "
      "GetSettings GetSocketPort HandleCloseDocument HandleCreateNewDocument HandleMenuSelection "
      "HandleOpenExistingDocument HandleSaveDocument IdleEvent InitializeTamberlinkInterface "
      "InvokeCommandDialog InvokeResolveDialog InvokeRestrictedFontsDialog PluginIsEnabled "
      "ProcessPanelMessages RegisterPlugPlug SetPathForDocument TerminateTamberlinkInterface "
      "UpdateDocumentFontUsage SetRebuildWorkgroupsMenuCallback ShowNotLoggedInMessageBox "
      "ShouldShowLogin");
  const Names all(std::istream_iterator<std::string>(names), {});
  EXPECT_EQ(exportsOf(""), all);
  int variants = 0;
  for (const std::string& name : all) {
    if (!std::filesystem::exists(FONT_MANAGER "/without-" + name)) continue;
    ++variants;
    Names others = all;
    others.erase(name);
    EXPECT_EQ(exportsOf("without-" + name + "/"), others);
  }
  EXPECT_EQ(variants, 15);
  EXPECT_EQ(exportsOf("without-all/"), Names());
}

}  // namespace
