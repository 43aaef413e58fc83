#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

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
  FILE* const output = popen((NM " -D --defined-only --format=posix " + module).c_str(), "r");
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
}

/// A running `Oxbrim`: the process that the test started, and the other ends of its standard input
/// and output.
struct Oxbrim {
  pid_t pid;
  int input;
  int output;
};

Oxbrim startOxbrim() {
  int input[2];
  int output[2];
  EXPECT_EQ(pipe(input) + pipe(output), 0);
  const pid_t pid = fork();
  if (pid == 0) {
    dup2(input[0], STDIN_FILENO);
    dup2(output[1], STDOUT_FILENO);
    for (const int end : {input[0], input[1], output[0], output[1]}) close(end);
    execl(FONT_MANAGER "/Oxbrim", "Oxbrim", nullptr);
    _exit(127);
  }
  close(input[0]);
  close(output[1]);
  return {pid, input[1], output[0]};
}

std::string readToEnd(int output) {
  std::string text;
  for (char byte = 0; read(output, &byte, 1) == 1;) text += byte;
  return text;
}

TEST(Oxbrim, RunsUntilItsInputEnds) {
  const Oxbrim oxbrim = startOxbrim();
  std::string line(6, ' ');
  ASSERT_EQ(read(oxbrim.output, line.data(), line.size()), 6);
  EXPECT_EQ(line, "ready\n");
  EXPECT_EQ(waitpid(oxbrim.pid, nullptr, WNOHANG), 0);
  close(oxbrim.input);
  EXPECT_EQ(readToEnd(oxbrim.output), "");
  int status = -1;
  ASSERT_EQ(waitpid(oxbrim.pid, &status, 0), oxbrim.pid);
  EXPECT_EQ(status, 0);
}

}  // namespace
