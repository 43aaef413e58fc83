#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "TemporaryFolder.h"

// The shipped module, in the hands of a host that shares no header with it: what it calls is known
// by the position in the host's tables alone.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Function = void (*)();
using Calls = std::vector<std::string>;

// Never destroyed: the module gives its suites back at process exit.
struct PositionHost {
  Calls calls;
  std::u16string path;
  std::u16string openedPath;
  std::map<std::string, Function> hooks;

  Calls TakeCalls() { return std::exchange(calls, {}); }
};
PositionHost& host = *new PositionHost;

enum { kRegister, kCommand, kUtility7, kUtility13, kProj, kMemory, kAdvApp, kSuiteCount };
constexpr std::array<std::pair<const char*, int>, kSuiteCount> kSuites{
    {{"AEGP Register Suite", 6},
     {"AEGP Command Suite", 1},
     {"AEGP Utility Suite", 7},
     {"AEGP Utility Suite", 13},
     {"AEGP Proj Suite", 9},
     {"AEGP Memory Suite", 1},
     {"PF AE Adv App Suite", 2}}};
constexpr size_t kMostFunctions = 33;

// As "AEGP Proj Suite 9: 1".
int32_t Note(int suite, size_t position) {
  const auto& [name, version] = kSuites[static_cast<size_t>(suite)];
  host.calls.push_back(name + (" " + std::to_string(version)) + ": " + std::to_string(position));
  return 0;
}

template <int suite, size_t position>
int32_t Record() {
  return Note(suite, position);
}

using Tables = std::array<std::array<Function, kMostFunctions>, kSuiteCount>;

template <int suite, size_t... positions>
void FillTable(Tables& tables, std::index_sequence<positions...>) {
  ((tables[suite][positions] = reinterpret_cast<Function>(&Record<suite, positions>)), ...);
}

template <int... suites>
void FillTables(Tables& tables, std::integer_sequence<int, suites...>) {
  (FillTable<suites>(tables, std::make_index_sequence<kMostFunctions>()), ...);
}

// A function that gives something back.
template <int suite, size_t position, class... Arguments>
void Supply(Tables& tables, int32_t (*function)(Arguments...)) {
  static int32_t (*const supplied)(Arguments...) = function;
  int32_t (*const recording)(Arguments...) = [](Arguments... arguments) {
    Note(suite, position);
    return supplied(arguments...);
  };
  tables[suite][position] = reinterpret_cast<Function>(recording);
}

template <class Hook>
int32_t KeepHook(const char* name, Hook hook) {
  host.hooks[name] = reinterpret_cast<Function>(hook);
  return 0;
}

Tables MakeTables() {
  Tables tables{};
  FillTables(tables, std::make_integer_sequence<int, kSuiteCount>());
  Supply<kRegister, 1>(
      tables, +[](int32_t, Function hook, void*) { return KeepHook("update menu", hook); });
  Supply<kRegister, 2>(
      tables, +[](int32_t, Function hook, void*) { return KeepHook("death", hook); });
  Supply<kRegister, 8>(
      tables, +[](int32_t, Function hook, void*) { return KeepHook("idle", hook); });
  Supply<kProj, 1>(
      tables, +[](int32_t, void** project) {
        *project = &host;
        return int32_t{0};
      });
  Supply<kProj, 3>(
      tables, +[](void*, void** handle) {
        *handle = &host.path;
        return int32_t{0};
      });
  Supply<kProj, 11>(
      tables, +[](const char16_t* path, void**) {
        host.openedPath = path;
        return int32_t{0};
      });
  Supply<kMemory, 2>(
      tables, +[](void* handle, void** start) {
        *start = static_cast<std::u16string*>(handle)->data();
        return int32_t{0};
      });
  return tables;
}

int32_t AcquireSuite(const char* name, int32_t version, const void** suite) {
  static const Tables tables = MakeTables();
  for (size_t i = 0; i < kSuites.size(); ++i) {
    const auto& [suiteName, suiteVersion] = kSuites[i];
    if (std::string(suiteName) == name && suiteVersion == version) *suite = tables[i].data();
  }
  return *suite ? 0 : 1;
}

int32_t ReleaseSuite(const char*, int32_t) {
  return 0;
}

const std::array<Function, 7> kBasicSuite{reinterpret_cast<Function>(AcquireSuite),
                                          reinterpret_cast<Function>(ReleaseSuite)};

class ModuleTest : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::current_path(folder.path());
    setenv("HOME", folder.path().c_str(), 1);
    // macOS takes the home directory from the password database, unless this names another.
    setenv("CFFIXED_USER_HOME", folder.path().c_str(), 1);
    host = {};
    // A file of its own for each test, so that the module's state is new.
    const auto file = folder.path() / "AETypelark";
    std::filesystem::copy_file(AE_TYPELARK, file);
    void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << dlerror();
    entry = reinterpret_cast<EntryPoint>(dlsym(module, "EntryPointFunc"));
    ASSERT_NE(entry, nullptr);
  }

  int32_t Start(const void* basic = kBasicSuite.data()) { return entry(basic, 114, 0, 5, nullptr); }

  void PlaceFramework() {
    folder.Write("Library/Veldrane/com.veldrane.Oxbrim-LaunchInfo.conf",
                 "oxbrim.path=" + (folder.path() / "Core/Oxbrim").string() + "\n");
    std::filesystem::create_directories(folder.path() / "Core/PluginFiles");
    std::filesystem::create_directory_symlink(
        TAMBERLINK_FRAMEWORK, folder.path() / "Core/PluginFiles/Tamberlink.framework");
  }

  static Calls Tick(int count = 1) {
    const auto idle = reinterpret_cast<int32_t (*)(void*, void*, int32_t*)>(host.hooks.at("idle"));
    for (int tick = 0; tick < count; ++tick) {
      host.calls.clear();
      EXPECT_EQ(idle(nullptr, nullptr, nullptr), 0);
    }
    return host.TakeCalls();
  }

  using EntryPoint = int32_t (*)(const void*, int32_t, int32_t, int32_t, void**);
  TemporaryFolder folder;
  EntryPoint entry = nullptr;
};

Calls operator+(Calls calls, const Calls& more) {
  calls.insert(calls.end(), more.begin(), more.end());
  return calls;
}

const Calls kReadPath{"AEGP Proj Suite 9: 1", "AEGP Proj Suite 9: 3", "AEGP Memory Suite 1: 2",
                      "AEGP Memory Suite 1: 3", "AEGP Memory Suite 1: 1"};
const Calls kReadDirty{"AEGP Proj Suite 9: 1", "AEGP Proj Suite 9: 8"};
const Calls kSnapshot = kReadPath + kReadDirty;

TEST_F(ModuleTest, StaysInertWithoutAFramework) {
  EXPECT_EQ(Start(), 0);
  EXPECT_THAT(host.calls, IsEmpty());
}

// The same as a framework that can't be loaded, which gives a handle on macOS.
TEST_F(ModuleTest, LeavesProjectsAloneWithAFrameworkThatHasNoExport) {
  std::filesystem::create_directory_symlink(TAMBERLINK_WITHOUT_ALL, "Tamberlink.framework");
  EXPECT_EQ(Start(), 0);
  host.path = folder.Write("a.aep", "").u16string();
  EXPECT_EQ(Tick(), kSnapshot);
}

TEST_F(ModuleTest, ReturnsTheErrorOfAMissingSuite) {
  EXPECT_EQ(Start(nullptr), 516);
}

// Each row: whether the trace is on.
class ModuleCallsTest : public ModuleTest, public testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(Trace, ModuleCallsTest, testing::Bool());

TEST_P(ModuleCallsTest, GoToTheRightPositionsFromTheEntryToTheEndOfAnActivation) {
  if (GetParam()) setenv("TYPELARK_TRACE", (folder.path() / "trace").c_str(), 1);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  PlaceFramework();
  folder.Write("vault", "Garamond\tautomatic\n");
  const std::u16string project = folder.Write("a.aep", "Garamond\n").u16string();

  EXPECT_EQ(Start(), 0);
  EXPECT_THAT(host.TakeCalls(), ElementsAre("AEGP Register Suite 6: 8", "AEGP Register Suite 6: 2",
                                            "AEGP Register Suite 6: 1", "AEGP Command Suite 1: 0",
                                            "AEGP Command Suite 1: 1", "AEGP Register Suite 6: 0"));
  EXPECT_EQ(Tick(), kSnapshot);
  host.path = project;
  EXPECT_EQ(Tick(), kSnapshot + kReadPath);
  EXPECT_EQ(Tick(), kSnapshot + kReadDirty + Calls{"AEGP Proj Suite 9: 10"});
  host.path.clear();
  EXPECT_EQ(Tick(2), kSnapshot + Calls({"AEGP Utility Suite 13: 31", "PF AE Adv App Suite 2: 5"}));
  EXPECT_EQ(Tick(7), kSnapshot + Calls{"AEGP Proj Suite 9: 11"});
  EXPECT_EQ(host.openedPath, project);
  EXPECT_EQ(Tick(15), kSnapshot);

  const auto updateMenu =
      reinterpret_cast<int32_t (*)(void*, void*, char)>(host.hooks.at("update menu"));
  EXPECT_EQ(updateMenu(nullptr, nullptr, 0), 0);
  EXPECT_THAT(host.TakeCalls(), ElementsAre("AEGP Command Suite 1: 4"));
  EXPECT_EQ(reinterpret_cast<int32_t (*)(void*, void*)>(host.hooks.at("death"))(nullptr, nullptr),
            0);
  EXPECT_THAT(host.TakeCalls(), IsEmpty());
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(std::filesystem::exists(folder.path() / "trace"), GetParam());
}

}  // namespace
