// Shows, at its first idle tick, the behaviour that the session's file "behaviour" or the variable
// BEHAVIOUR names.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utime.h>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <iostream>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "AE_GeneralPlug.h"
#include "desktop/Application.h"

namespace {

SPBasicSuite* basic = nullptr;
AEGP_PluginID pluginId = 0;
AEGP_Command command = 0;

/// Holds a suite for as long as it lives.
template <typename Table>
class Suite {
 public:
  Suite(const char* name, int32 version) : mName(name), mVersion(version) {
    basic->AcquireSuite(name, version, reinterpret_cast<const void**>(&mTable));
  }
  ~Suite() { basic->ReleaseSuite(mName, mVersion); }
  Suite(const Suite&) = delete;
  Suite& operator=(const Suite&) = delete;
  const Table* operator->() const { return mTable; }

 private:
  const char* mName;
  int32 mVersion;
  const Table* mTable = nullptr;
};

struct Register : Suite<AEGP_RegisterSuite5> {
  Register() : Suite(kAEGPRegisterSuite, kAEGPRegisterSuiteVersion5) {}
};
struct Commands : Suite<AEGP_CommandSuite1> {
  Commands() : Suite(kAEGPCommandSuite, kAEGPCommandSuiteVersion1) {}
};
struct Projects : Suite<AEGP_ProjSuite6> {
  Projects() : Suite(kAEGPProjSuite, kAEGPProjSuiteVersion6) {}
};
struct Memory : Suite<AEGP_MemorySuite1> {
  Memory() : Suite(kAEGPMemorySuite, kAEGPMemorySuiteVersion1) {}
};
struct Utility : Suite<AEGP_UtilitySuite3> {
  Utility() : Suite(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion3) {}
};

AEGP_MemHandle PathHandle() {
  const Projects projects;
  AEGP_ProjectH project = nullptr;
  AEGP_MemHandle path = nullptr;
  projects->AEGP_GetProjectByIndex(0, &project);
  projects->AEGP_GetProjectPath(project, &path);
  return path;
}

void Acquire() {
  const void* suite = nullptr;
  basic->AcquireSuite("AEGP Memory Suite", 1, &suite);
}

void Lock(AEGP_MemHandle handle) {
  void* start = nullptr;
  Memory()->AEGP_LockMemHandle(handle, &start);
}

void KeepAPreference() {
  const Suite<AEGP_PersistentDataSuite3> writer(kAEGPPersistentDataSuite,
                                                kAEGPPersistentDataSuiteVersion3);
  const Suite<AEGP_PersistentDataSuite4> reader(kAEGPPersistentDataSuite,
                                                kAEGPPersistentDataSuiteVersion4);
  AEGP_PersistentBlobH blob = nullptr;
  writer->AEGP_GetApplicationBlob(&blob);
  writer->AEGP_SetString(blob, "Section", "new", "kept");
  for (const char* key : {"old", "new", "other"}) {
    char text[16] = "";
    A_u_long size = 0;
    reader->AEGP_GetString(blob, "Section", key, "fallback", sizeof text, text, &size);
    std::printf("%s is %s\n", key, text);
  }
}

// Keeps a suite until the process exits, or crashes there.
struct HeldToTheEnd {
  bool holds = false;
  bool crashes = false;
  bool reports = false;
  HeldToTheEnd() {
    std::string behaviour;
    std::getline(std::ifstream("behaviour") >> std::ws, behaviour);
    if (behaviour == "crash at load") std::abort();
    while (behaviour == "hang at load") pause();
  }
  ~HeldToTheEnd() {
    if (crashes) std::abort();
    if (reports) Utility()->AEGP_ReportInfo(pluginId, "at exit");
    if (holds) basic->ReleaseSuite("AEGP Memory Suite", 1);
  }
} heldToTheEnd;

void Hang() {
  while (true) pause();
}

// Forgets the handle if it can't be locked.
void ReadPathCarelessly() {
  const Memory memory;
  const AEGP_MemHandle path = PathHandle();
  void* start = nullptr;
  if (memory->AEGP_LockMemHandle(path, &start) != A_Err_NONE) return;
  memory->AEGP_UnlockMemHandle(path);
  memory->AEGP_FreeMemHandle(path);
}

// As if the framework had been called.
void WriteJournal(const std::string& lines) {
  std::ofstream("journal", std::ios::app) << lines;
}

void CloseProject() {
  AEGP_ProjectH project = nullptr;
  Projects()->AEGP_NewProject(&project);
}

// Closes the open project for its fonts, and has them active. Neither opens it again nor listens to
// the user.
void ActivateAndForget() {
  std::ofstream("active-fonts", std::ios::app) << "Garamond\n";
  WriteJournal(
      "InitializeTamberlinkInterface\nPluginIsEnabled\tenabled=true\n"
      "HandleOpenExistingDocument\tpath=projects/a.aep\tcount=1\n");
  CloseProject();
}

void OpenAgain() {
  const std::u16string path = (std::filesystem::current_path() / "projects/a.aep").u16string();
  AEGP_ProjectH project = nullptr;
  Projects()->AEGP_OpenProjectFromPath(reinterpret_cast<const A_UTF16Char*>(path.c_str()),
                                       &project);
}

// What happens when the module is finalised, after its static objects are destroyed.
void (*finally)() = nullptr;
[[gnu::destructor]] void Finalise() {
  if (finally) finally();
}

desktop::ModalSession BeginNothing(desktop::Application& /*application*/,
                                   desktop::Window& /*window*/) {
  return 0;
}

void* Allocate() {
  void* block = nullptr;
  basic->AllocateBlock(8, &block);
  return block;
}

void AskForPath(AEGP_ProjectH project) {
  AEGP_MemHandle path = nullptr;
  Projects()->AEGP_GetProjectPath(project, &path);
}

// The child keeps every descriptor of the process open.
void LeaveChildBehind() {
  if (fork() == 0) Hang();
}

// In no group of the process, and without a parent.
void LeaveDaemonBehind() {
  if (const pid_t parent = fork(); parent > 0) {
    waitpid(parent, nullptr, 0);
    return;
  }
  setsid();
  const pid_t daemon = fork();
  if (daemon == 0) Hang();
  std::printf("leaves process %d\n", daemon);
  _exit(0);
}

// Has one thread hold a stream for good, as one that waits for input does.
void HoldAStream() {
  static std::FILE* const stream = std::fopen("/dev/null", "r");
  std::promise<void> holds;
  std::thread([&holds] {
    flockfile(stream);
    holds.set_value();
    Hang();
  }).detach();
  holds.get_future().wait();
}

A_Err Idle(AEGP_GlobalRefcon, AEGP_IdleRefcon, A_long*);

bool throwsInCommand = false;
bool repeatsCommand = false;
bool needsMemoryAtDeath = false;
// Their dates are printed at the next tick.
std::vector<std::string> writtenFiles;

const std::map<std::string, std::function<void()>> kBehaviours{
    {"leak a suite", Acquire},
    {"leak a suite and use it again",
     [] {
       Acquire();
       needsMemoryAtDeath = true;
     }},
    {"release a suite twice",
     [] {
       Acquire();
       basic->ReleaseSuite("AEGP Memory Suite", 1);
       basic->ReleaseSuite("AEGP Memory Suite", 1);
     }},
    {"hold a suite to the end",
     [] {
       Acquire();
       heldToTheEnd.holds = true;
     }},
    {"leak a handle", [] { PathHandle(); }},
    {"leak a lock", [] { Lock(PathHandle()); }},
    {"free a locked handle",
     [] {
       const AEGP_MemHandle handle = PathHandle();
       Lock(handle);
       Memory()->AEGP_FreeMemHandle(handle);
     }},
    {"free a handle twice",
     [] {
       const AEGP_MemHandle handle = PathHandle();
       Memory()->AEGP_FreeMemHandle(handle);
       PathHandle();
       Memory()->AEGP_FreeMemHandle(handle);
     }},
    {"unlock a handle",
     [] {
       const AEGP_MemHandle handle = PathHandle();
       Memory()->AEGP_UnlockMemHandle(handle);
       Memory()->AEGP_FreeMemHandle(handle);
     }},
    {"lock and unlock",
     [] {
       const AEGP_MemHandle handle = PathHandle();
       Lock(handle);
       Memory()->AEGP_UnlockMemHandle(handle);
       Memory()->AEGP_FreeMemHandle(handle);
     }},
    {"crash", [] { raise(SIGSEGV); }},
    {"crash after printing",
     [] {
       std::printf("last words\x1b \xc2\x9b \xc3\xa9 \xff in %s/file",
                   std::filesystem::current_path().c_str());
       std::fputs("and more\n", stderr);
       std::abort();
     }},
    {"crash after printing much",
     [] {
       std::puts(std::string(300'000, 'x').c_str());
       std::puts("the end");
       std::fflush(stdout);
       std::abort();
     }},
    {"crash at exit", [] { heldToTheEnd.crashes = true; }},
    {"report at exit", [] { heldToTheEnd.reports = true; }},
    {"acquire when finalised", [] { finally = Acquire; }},
    {"hold a suite until finalised",
     [] {
       Acquire();
       finally = [] { basic->ReleaseSuite("AEGP Memory Suite", 1); };
     }},
    {"pass null when finalised", [] { finally = [] { basic->FreeBlock(nullptr); }; }},
    {"crash when finalised", [] { finally = [] { std::abort(); }; }},
    {"hang when finalised", [] { finally = Hang; }},
    {"exit when finalised", [] { finally = [] { std::exit(0); }; }},
    {"go on in a fork",
     [] {
       if (fork() > 0) _exit(0);
     }},
    {"return from a fork",
     [] {
       if (const pid_t child = fork(); child > 0) waitpid(child, nullptr, 0);
     }},
    {"leave the folder", [] { std::filesystem::current_path("/"); }},
    {"throw in a command",
     [] {
       throwsInCommand = true;
       Commands()->AEGP_DoCommand(command);
     }},
    {"pick without end",
     [] {
       repeatsCommand = true;
       Commands()->AEGP_DoCommand(command);
     }},
    {"enable a removed item",
     [] {
       Commands()->AEGP_RemoveMenuCommand(command);
       Commands()->AEGP_EnableCommand(command);
     }},
    {"need the memory suite at death", [] { needsMemoryAtDeath = true; }},
    {"ignore its children", [] { std::signal(SIGCHLD, SIG_IGN); }},
    {"hold a stream", HoldAStream},
    {"put a pipe in the place of the project",
     [] {
       unlink("projects/a.aep");
       mkfifo("projects/a.aep", 0600);
     }},
    {"throw in a thread",
     [] { std::thread([] { throw std::runtime_error("from a [thread]\nof mine"); }).join(); }},
    {"hang", Hang},
    {"hang with a child",
     [] {
       LeaveChildBehind();
       Hang();
     }},
    {"leave a child behind",
     [] {
       LeaveChildBehind();
       _exit(0);
     }},
    {"close all descriptors", [] { closefrom(STDERR_FILENO + 1); }},
    {"leave a daemon behind", LeaveDaemonBehind},
    {"exit", [] { std::exit(0); }},
    {"exit in a thread", [] { std::thread([] { std::exit(0); }).join(); }},
    {"call a released suite",
     [] {
       AEGP_Command unused = 0;
       const AEGP_CommandSuite1* suite = nullptr;
       suite = Commands().operator->();
       suite->AEGP_GetUniqueCommand(&unused);
     }},
    {"call an unsupplied function of a released suite",
     [] {
       const AEGP_UtilitySuite3* suite = nullptr;
       suite = Utility().operator->();
       const auto function = reinterpret_cast<void (*)()>(suite->AEGP_GetMainHWND);
       reinterpret_cast<A_Err (*)()>(function)();
     }},
    {"write past a handle",
     [] {
       const AEGP_MemHandle handle = PathHandle();
       reinterpret_cast<volatile char*>(*handle)[2] = 'x';
       Memory()->AEGP_FreeMemHandle(handle);
     }},
    {"write past a block",
     [] {
       void* const block = Allocate();
       static_cast<volatile char*>(block)[8] = 'x';
       basic->FreeBlock(block);
     }},
    {"hold a megabyte more",
     [] {
       static std::vector<std::vector<char>> held;
       held.emplace_back(1'000'000);
     }},
    {"free a megabyte and close projects",
     [] {
       for (int i = 0; i < 300; ++i) {
         void* block = nullptr;
         basic->AllocateBlock(10'000, &block);
         basic->FreeBlock(block);
         CloseProject();
       }
     }},
    {"call from two threads",
     [] {
       const auto callOften = [] {
         for (int i = 0; i < 1000; ++i) Acquire();
       };
       std::thread other(callOften);
       std::thread another(callOften);
       other.join();
       another.join();
     }},
    {"crash in a child",
     [] {
       if (const pid_t child = fork(); child > 0) {
         waitpid(child, nullptr, 0);
         throw std::runtime_error("boom");
       }
       std::abort();
     }},
    {"ask for what is missing",
     [] {
       const void* suite = nullptr;
       basic->AcquireSuite("AEGP Item Suite", 13, &suite);
       basic->AcquireSuite("AEGP Proj Suite", 6, &suite);
       const Utility utility;
       const auto function = reinterpret_cast<void (*)()>(utility->AEGP_GetMainHWND);
       reinterpret_cast<A_Err (*)()>(function)();
     }},
    {"leak a block", [] { Allocate(); }},
    {"free a block that has moved",
     [] {
       void* const block = Allocate();
       void* moved = nullptr;
       basic->ReallocateBlock(block, 1'000'000, &moved);
       basic->FreeBlock(moved);
       basic->FreeBlock(block);
     }},
    {"pass null often",
     [] {
       for (int i = 0; i < 1000; ++i) basic->FreeBlock(nullptr);
       Utility()->AEGP_EndUndoGroup();
     }},
    {"pass what looks like a result", [] { basic->ReleaseSuite("suite\nresult: ok", 1); }},
    {"pass a wild pointer",
     [] { Utility()->AEGP_ReportInfo(pluginId, reinterpret_cast<const A_char*>(8)); }},
    {"free a block twice",
     [] {
       void* const block = Allocate();
       basic->FreeBlock(block);
       Allocate();
       basic->FreeBlock(block);
     }},
    {"pass null", [] { Utility()->AEGP_ReportInfo(pluginId, nullptr); }},
    {"pass another id", [] { Utility()->AEGP_ReportInfo(77, "who is this"); }},
    {"use a closed project",
     [] {
       const Projects projects;
       AEGP_ProjectH closed = nullptr;
       AEGP_ProjectH unused = nullptr;
       projects->AEGP_GetProjectByIndex(0, &closed);
       projects->AEGP_NewProject(&unused);
       AskForPath(closed);
     }},
    {"use no project", [] { AskForPath(reinterpret_cast<AEGP_ProjectH>(&command)); }},
    {"call from a thread", [] { std::thread(Acquire).join(); }},
    {"register late", [] { Register()->AEGP_RegisterIdleHook(pluginId, Idle, nullptr); }},
    {"insert an unknown command",
     [] {
       Commands()->AEGP_InsertMenuCommand(3, "Not mine", AEGP_Menu_WINDOW, AEGP_MENU_INSERT_SORTED);
     }},
    {"insert into no menu",
     [] { Commands()->AEGP_InsertMenuCommand(command, "Nowhere", 0, AEGP_MENU_INSERT_SORTED); }},
    {"enable outside a hook", [] { Commands()->AEGP_EnableCommand(command); }},
    {"keep an undo group", [] { Utility()->AEGP_StartUndoGroup("Undo"); }},
    {"group for undo",
     [] {
       if (Utility()->AEGP_StartUndoGroup("Undo") == A_Err_NONE) Utility()->AEGP_EndUndoGroup();
     }},
    {"end an undo group", [] { Utility()->AEGP_EndUndoGroup(); }},
    {"interrupt",
     [] {
       kill(getppid(), SIGINT);
       raise(SIGINT);
     }},
    {"end the process", [] { _exit(0); }},
    {"end the process with a code", [] { _exit(3); }},
    {"throw", [] { throw std::runtime_error("boom"); }},
    {"throw an int", [] { throw 516; }},
    {"read the path carelessly", ReadPathCarelessly},
    {"ask the framework",
     [] {
       void* const framework = dlopen("./Tamberlink.framework/Tamberlink", RTLD_NOW);
       const auto ask =
           reinterpret_cast<uint32_t (*)(bool, bool*)>(dlsym(framework, "PluginIsEnabled"));
       bool enabled = false;
       if (ask(false, &enabled) != 0) Utility()->AEGP_ReportInfo(pluginId, "the framework fails");
     }},
    {"call only the first time",
     [] {
       const char* const trace = std::getenv("TRACE");
       if (std::filesystem::exists(trace)) return;
       std::ofstream(trace) << "called";
       CloseProject();
     }},
    {"leave a mark",
     [] {
       if (std::filesystem::exists("mark") || std::filesystem::is_symlink("link")) {
         Utility()->AEGP_ReportInfo(pluginId, "somebody was here");
       }
       std::ofstream("mark") << "was here";
       std::filesystem::create_symlink("mark", "link");
       std::ofstream("projects/a.aep") << "changed";
       const Memory memory;
       memory->AEGP_FreeMemHandle(PathHandle());
     }},
    {"hold more of everything",
     [] {
       static const std::string held(20'000, 'x');
       open("/dev/null", O_RDONLY);
       std::ofstream("one") << "and";
       std::ofstream("another");
       PathHandle();
       Allocate();
       Acquire();
     }},
    {"close the project", CloseProject},
    {"activate and forget", ActivateAndForget},
    {"activate without a look at the fonts",
     [] {
       ActivateAndForget();
       OpenAgain();
     }},
    {"pass odd buffers",
     [] {
       WriteJournal(
           "InvokeResolveDialog\tlist=(not terminated)\tsize=131072\tlist=\tsize=0\n"
           "GetIDForDocument\tpath=a\tsize=257\tid=(not terminated)\tsize=257\n");
     }},
    {"report", [] { Utility()->AEGP_ReportInfo(pluginId, "something is up"); }},
    {"report two lines", [] { Utility()->AEGP_ReportInfo(pluginId, "one\ntwo"); }},
    {"keep a preference", KeepAPreference},
    {"write files",
     [] {
       const std::string folder = std::filesystem::current_path().string();
       std::ofstream("written") << "in " << folder;
       std::fputs("to the error stream\n", stderr);
       std::filesystem::create_directories("new/folder");
       std::ofstream("new/folder/written") << "deep";
       std::ofstream("dated") << "by the plug-in";
       const utimbuf dates{1'234'567'890, 1'234'567'890};
       utime("dated", &dates);
       writtenFiles = {folder + "/written", folder + "/new/folder/written", folder + "/dated"};
     }},
    {"work in a thread",
     [] {
       // Ends long after the tick, and before a pause.
       std::thread([] {
         std::mutex mutex;
         std::unique_lock lock(mutex);
         std::condition_variable never;
         const auto begin = std::chrono::steady_clock::now();
         never.wait_until(lock, std::chrono::system_clock::now() + std::chrono::milliseconds(100));
         const bool waited =
             std::chrono::steady_clock::now() - begin >= std::chrono::milliseconds(100);
         std::ofstream("done") << (waited ? "waited" : "didn't wait");
       }).detach();
     }},
    {"leave a trace", [] { std::ofstream(std::getenv("TRACE")) << "left"; }},
    {"wait for the trace", [] { std::ifstream(std::getenv("TRACE")).get(); }},
    {"tell the time",
     [] { std::printf("it is %lld\n", static_cast<long long>(std::time(nullptr))); }},
    {"print without end",
     [] {
       for (int i = 0; i < 34'000; ++i) std::puts("again");
     }},
    {"print odd bytes",
     [] {
       std::puts("\x1b \xff \uFFFE <&>");
       Utility()->AEGP_ReportInfo(pluginId, "\xff");
     }},
    {"print to both outputs in turn",
     [] {
       std::printf("one\n");
       std::fputs("two\n", stderr);
       std::cout << "three\n";
       std::cerr << "four\n";
       std::puts("five");
       std::clog << "six\n";
       dprintf(fileno(stdout), "by the descriptor\n");
     }},
    {"end no line", [] { std::printf("no line end"); }},
    {"keep dialogs from beginning",
     [] { desktop::Application::sharedApplication().exchangeBeginModalSession(BeginNothing); }},
    {"insert at the top",
     [] {
       Commands()->AEGP_InsertMenuCommand(command, "Top", AEGP_Menu_WINDOW,
                                          AEGP_MENU_INSERT_AT_TOP);
     }},
};

std::string TakeBehaviour() {
  std::string behaviour;
  std::ifstream file("behaviour");
  std::getline(file, behaviour);
  file.close();
  unlink("behaviour");
  if (const char* const wanted = std::getenv("BEHAVIOUR")) behaviour = wanted;
  return behaviour;
}

A_Err Idle(AEGP_GlobalRefcon, AEGP_IdleRefcon, A_long*) {
  static const std::string behaviour = TakeBehaviour();
  static bool isDone = behaviour.empty();
  if (behaviour == "fail") return 42;
  if (needsMemoryAtDeath) const Memory memory;
  for (const std::string& file : writtenFiles) {
    struct stat status {};
    stat(file.c_str(), &status);
    std::printf("%s, %lld\n", file.c_str(), static_cast<long long>(status.st_mtime));
  }
  if (!isDone) {
    isDone = true;
    kBehaviours.at(behaviour)();
  }
  return A_Err_NONE;
}

A_Err UpdateMenu(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType) {
  return Commands()->AEGP_EnableCommand(command);
}

A_Err Command(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command picked, AEGP_HookPriority,
              A_Boolean, A_Boolean* handled) {
  if (repeatsCommand) {
    Commands()->AEGP_DoCommand(command);
    Commands()->AEGP_DoCommand(command);
  }
  if (throwsInCommand) throw std::runtime_error("nested");
  std::printf("command %s\n", picked == command ? "of mine" : std::to_string(picked).c_str());
  if (picked == command) *handled = 1;
  return A_Err_NONE;
}

A_Err Death(AEGP_GlobalRefcon, AEGP_DeathRefcon) {
  const void* suite = nullptr;
  if (needsMemoryAtDeath && basic->AcquireSuite("AEGP Memory Suite", 1, &suite) == A_Err_NONE) {
    basic->ReleaseSuite("AEGP Memory Suite", 1);
  } else if (needsMemoryAtDeath) {
    std::abort();
  }
  std::printf("goodbye\n");
  return A_Err_NONE;
}

}  // namespace

extern "C" [[gnu::visibility("default")]] A_Err EntryPointFunc(SPBasicSuite* basicSuite, A_long,
                                                               A_long, AEGP_PluginID id,
                                                               AEGP_GlobalRefcon*) {
  basic = basicSuite;
  pluginId = id;
  const Register suite;
  suite->AEGP_RegisterIdleHook(id, Idle, nullptr);
  if (std::getenv("REGISTERS_TWICE")) suite->AEGP_RegisterIdleHook(id, Idle, nullptr);
  suite->AEGP_RegisterUpdateMenuHook(id, UpdateMenu, nullptr);
  suite->AEGP_RegisterCommandHook(id, AEGP_HP_BeforeAE, AEGP_Command_ALL, Command, nullptr);
  suite->AEGP_RegisterDeathHook(id, Death, nullptr);
  const Commands commands;
  commands->AEGP_GetUniqueCommand(&command);
  return commands->AEGP_InsertMenuCommand(command, "Mine", AEGP_Menu_WINDOW,
                                          AEGP_MENU_INSERT_SORTED);
}
