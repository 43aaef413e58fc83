#include "Tamberlink.h"
#include "TemporaryFolder.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "ErrorCodes.h"

using CoreErrorCodes::kAlreadyInitialized;
using CoreErrorCodes::kIndexOutOfRange;
using CoreErrorCodes::kNotFound;
using CoreErrorCodes::kSuccess;
using GFile::kOpenFailed;

/// The module's export, with the type from its header.
#define EXPORT(name) loadExport<decltype(name)>(#name)

namespace {

// The test's own copy of the module, so that its state is new.
void* module = nullptr;

template <typename Function>
Function* loadExport(const char* name) {
  void* const symbol = dlsym(module, name);
  if (symbol == nullptr) throw std::runtime_error(dlerror());
  return reinterpret_cast<Function*>(symbol);
}

void write(const std::string& file, const std::string& text,
           std::ios::openmode mode = std::ios::out) {
  std::ofstream(file, mode) << text;
}

std::string read(const std::string& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

/// The result, the list, the count and the size of `HandleOpenExistingDocument`.
using Opened = std::tuple<uint32_t, std::string, int32_t, uint64_t>;

Opened openDocument(const char* path, uint64_t capacity = 64) {
  const auto list = std::make_unique<char[]>(capacity);  // so that a byte too many is noticed
  uint64_t size = capacity;
  int32_t count = -1;
  const uint32_t result = EXPORT(HandleOpenExistingDocument)(path, list.get(), &size, &count);
  return {result, capacity > 0 ? list.get() : "", count, size};
}

std::string idOf(const char* path) {
  std::array<char, 256> id = {'x'};
  uint64_t size = id.size();
  const uint32_t result = EXPORT(GetIDForDocument)(path, id.data(), &size);
  EXPECT_EQ(result, id[0] == '\0' ? kNotFound : kSuccess);
  return id.data();
}

/// Runs in a temporary session folder.
class TamberlinkTest : public testing::Test {
 protected:
  TamberlinkTest() {
    std::filesystem::current_path(mFolder.path());
    const auto file = mFolder.path() / "Tamberlink";
    std::filesystem::copy_file(FONT_MANAGER "/Tamberlink.framework/Tamberlink", file);
    module = dlopen(file.c_str(), RTLD_NOW);
    if (module == nullptr) throw std::runtime_error(dlerror());
    write("vault",
          "Auto A\tautomatic\nAuto B\tautomatic\nPick A\tchoice\nPick B\tchoice\n"
          "Closed A\trestricted\nClosed B\trestricted\n");
  }

 private:
  TemporaryFolder mFolder;
};

TEST_F(TamberlinkTest, OpeningActivatesWhatNeedsNoAskingAndListsTheRest) {
  struct Case {
    const char* project;
    const char* active;
    Opened opened;
    const char* activeAfterwards;
  };
  const Case cases[] = {
      {"", "", {kSuccess, "", 0, 64}, ""},
      {"Auto B\nAuto A", "", {kSuccess, "", 2, 64}, "Auto B\nAuto A\n"},
      {"Auto A\n\nAuto A\n", "", {kSuccess, "", 1, 64}, "Auto A\n"},
      {"Auto A\nPick A\nPick B\n",
       "Auto A\nPick B\n",
       {kSuccess, "Pick A", 0, 64},
       "Auto A\nPick B\n"},
      {"Pick B\nAuto A\nPick A\n", "", {kSuccess, "Pick B\nPick A", 1, 64}, "Auto A\n"},
      {"Pick A\nClosed B\nAuto A\n",
       "X\n",
       {kAlreadyInitialized, "Closed B", 1, 64},
       "X\nAuto A\n"},
      {"auto a\nNowhere\n", "", {kSuccess, "", 0, 64}, ""},
  };
  for (const Case& row : cases) {
    write("project", row.project);
    write("active-fonts", row.active);
    EXPECT_EQ(openDocument("project"), row.opened) << row.project;
    EXPECT_EQ(read("active-fonts"), row.activeAfterwards) << row.project;
  }
}

TEST_F(TamberlinkTest, UnreadableProjectFails) {
  for (const char* path : {"nowhere", ".", ""}) {
    EXPECT_EQ(openDocument(path), Opened(kOpenFailed, "", 0, 64)) << path;
    EXPECT_EQ(idOf(path), "");
  }
}

TEST_F(TamberlinkTest, ListThatDoesNotFitFailsAndChangesNothing) {
  write("project", "Auto A\nPick A\n");
  for (const uint64_t capacity : {0U, 1U, 6U}) {
    EXPECT_EQ(openDocument("project", capacity), Opened(kIndexOutOfRange, "", 0, capacity));
  }
  EXPECT_EQ(read("active-fonts"), "");
  EXPECT_EQ(openDocument("project", 7), Opened(kSuccess, "Pick A", 1, 7));
  write("framework-answers", "HandleOpenExistingDocument\ttext=Too long\n");
  EXPECT_EQ(openDocument("project", 7), Opened(kIndexOutOfRange, "", 0, 7));
}

TEST_F(TamberlinkTest, ResolveDialogLeavesWhatTheUserPicksFromTheList) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"choose=", ""},
      {"choose=Pick B", "Pick B"},
      {"choose=Pick B;Pick A;Not offered", "Pick A\nPick B"},
      {"choose=Pick A\ttext=Other;Another", "Other\nAnother"},
  };
  for (const auto& [answer, expected] : cases) {
    write("framework-answers", std::string("InvokeResolveDialog\t") + answer + "\n", std::ios::app);
    std::array<char, 64> list = {"Pick A\nPick B"};
    uint64_t size = list.size();
    EXPECT_EQ(EXPORT(InvokeResolveDialog)(list.data(), &size), kSuccess);
    EXPECT_STREQ(list.data(), expected);
    EXPECT_EQ(size, list.size());
  }
}

TEST_F(TamberlinkTest, ChosenFontsBecomeActiveUnlessTheVaultForbids) {
  std::tuple<std::string, uint32_t, int32_t, const char*> cases[] = {
      {"Pick A", kSuccess, 1, "Pick A\n"},
      {"Pick B\nPick A\nPick B", kSuccess, 1, "Pick A\nPick B\n"},
      {"", kSuccess, 0, "Pick A\nPick B\n"},
      {"Closed A\nAuto A", kNotFound, 1, "Pick A\nPick B\nAuto A\n"},
      {"Nowhere", kNotFound, 0, "Pick A\nPick B\nAuto A\n"},
  };
  for (auto& [chosen, result, expectedCount, active] : cases) {
    int32_t count = -1;
    EXPECT_EQ(EXPORT(ActivateChosenFonts)("project", chosen.data(), &count), result);
    EXPECT_EQ(count, expectedCount) << chosen;
    EXPECT_EQ(read("active-fonts"), active) << chosen;
  }
}

TEST_F(TamberlinkTest, EachAnswerServesOneCallOfItsOperationInOrder) {
  write("project", "");
  write("framework-answers",
        "HandleOpenExistingDocument\tresult=0x0C000000\ttext=A;B\tcount=-1\n"
        "ShouldShowLogin\tresult=21\n"
        "HandleOpenExistingDocument\tsize=0x100\tresult=117440512\n");
  EXPECT_EQ(openDocument("project"), Opened(kIndexOutOfRange, "A\nB", -1, 64));
  EXPECT_EQ(openDocument("project"), Opened(kNotFound, "", 0, 256));
  EXPECT_EQ(openDocument("project"), Opened(kSuccess, "", 0, 64));
  write("framework-answers", "HandleOpenExistingDocument\tcount=7\n", std::ios::app);
  EXPECT_EQ(openDocument("project"), Opened(kSuccess, "", 7, 64));
  bool show = true;
  EXPECT_EQ(EXPORT(ShouldShowLogin)(&show), 21U);
  EXPECT_EQ(EXPORT(ShouldShowLogin)(&show), kSuccess);
}

TEST_F(TamberlinkTest, FlagsFollowTheState) {
  const std::tuple<const char*, bool, bool> cases[] = {
      {"", true, false},
      {"enabled=false\n", false, false},
      {"show login=true\nenabled=true\n", true, true},
      {"show login=false\nenabled=false\n", false, false},
  };
  for (const auto& [state, expectedEnabled, expectedShow] : cases) {
    write("framework-state", state);
    bool enabled = !expectedEnabled;
    bool show = !expectedShow;
    EXPECT_EQ(EXPORT(PluginIsEnabled)(true, &enabled), kSuccess);
    EXPECT_EQ(EXPORT(ShouldShowLogin)(&show), kSuccess);
    EXPECT_EQ(enabled, expectedEnabled) << state;
    EXPECT_EQ(show, expectedShow) << state;
  }
}

TEST_F(TamberlinkTest, DocumentsKeepTheirIdentifierUntilTheyClose) {
  write("one", "");
  openDocument("one");
  openDocument("one");
  EXPECT_EQ(idOf("one"), "document-1");

  std::array<char, 256> id = {};
  uint64_t size = id.size();
  EXPECT_EQ(EXPORT(HandleCreateNewDocument)(id.data(), &size), kSuccess);
  EXPECT_STREQ(id.data(), "document-2");
  EXPECT_EQ(idOf(""), "");
  EXPECT_EQ(EXPORT(HandleSaveDocument)("two", id.data()), kNotFound);
  EXPECT_EQ(EXPORT(SetPathForDocument)("two", "document-3"), kNotFound);
  EXPECT_EQ(EXPORT(SetPathForDocument)("two", id.data()), kSuccess);
  EXPECT_EQ(EXPORT(HandleSaveDocument)("two", id.data()), kSuccess);
  EXPECT_EQ(EXPORT(SetPathForDocument)("one", id.data()), kSuccess);
  EXPECT_EQ(idOf("one"), "document-2");
  EXPECT_EQ(EXPORT(SetPathForDocument)("two", "document-1"), kNotFound);

  EXPECT_EQ(EXPORT(HandleCloseDocument)("one", id.data()), kSuccess);
  EXPECT_EQ(EXPORT(HandleCloseDocument)("one", id.data()), kNotFound);
  openDocument("one");
  EXPECT_EQ(idOf("one"), "document-3");
}

TEST_F(TamberlinkTest, BuffersAreUsedNoFurtherThanTheyReach) {
  std::vector<char> small(10, 'x');
  uint64_t size = small.size();
  EXPECT_EQ(EXPORT(HandleCreateNewDocument)(small.data(), &size), kIndexOutOfRange);
  EXPECT_STREQ(small.data(), "");
  const std::vector<char> id(256, 'x');
  EXPECT_EQ(EXPORT(SetPathForDocument)("one", id.data()), kNotFound);
  std::vector<char> list(0x20000, 'x');
  int32_t count = 0;
  EXPECT_EQ(EXPORT(ActivateChosenFonts)("one", list.data(), &count), kNotFound);
}

TEST_F(TamberlinkTest, JournalKeepsACallOnOneLine) {
  write("a\tb\\c", "Pick A\nPick B\nAuto A\n");
  openDocument("a\tb\\c");
  EXPORT(IdleEvent)();
  EXPECT_EQ(read("journal"),
            "HandleOpenExistingDocument\tpath=a\\tb\\\\c\tsize=64\tlist=Pick A\\nPick B\tsize=64\t"
            "count=1\tresult=0x00000000\nIdleEvent\n");
}

}  // namespace
