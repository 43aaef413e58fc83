// Does at its first idle tick what the variable BEHAVIOUR or, without it, the session's file
// "behaviour" says: one or more of the actions below, as "acquire; release". Goes on at the next
// tick after "tick". What comes after "call: " it writes to the framework's journal.

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utime.h>

#include <chrono>
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
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "AE_GeneralPlug.h"
#include "desktop/Application.h"

namespace {

using namespace std::chrono_literals;

SPBasicSuite* basic = nullptr;
AEGP_PluginID pluginId = 0;
AEGP_Command command = 0;

void Hang() {
  while (true) pause();
}

const std::string kBehaviour = [] {
  std::string wanted;
  std::getline(std::ifstream("behaviour"), wanted);
  if (const char* const variable = std::getenv("BEHAVIOUR")) wanted = variable;
  if (wanted == "crash at load") std::abort();
  if (wanted == "hang at load") Hang();
  return wanted;
}();

A_Err idleResult = A_Err_NONE;
bool handlesAll = false;
// What the hooks do besides: the idle hook on each tick after the first.
std::function<void()> onTick, onMenu, onCommand, onDeath;

struct AtExit {
  std::function<void()> action;
  ~AtExit() {
    if (action) action();
  }
} atExit;

// What happens when the module is finalised, after its static objects are destroyed.
void (*finally)() = nullptr;
[[gnu::destructor]] void Finalise() {
  if (finally) finally();
}

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

void Acquire() {
  const void* suite = nullptr;
  basic->AcquireSuite("AEGP Memory Suite", 1, &suite);
}

void Release() {
  basic->ReleaseSuite("AEGP Memory Suite", 1);
}

// Whatever the type of its slot is.
template <typename Function>
void CallUnsupplied(Function* function) {
  reinterpret_cast<A_Err (*)()>(reinterpret_cast<void (*)()>(function))();
}

void Report(const char* text) {
  Utility()->AEGP_ReportInfo(pluginId, text);
}

constexpr A_UTF16Char kHalfAPair[] = {0xd800, 0};

// On which the actions act.
AEGP_ProjectH project = nullptr;
AEGP_MemHandle handle = nullptr;
void* block = nullptr;
pid_t child = -1;

AEGP_MemHandle PathHandle() {
  const Projects projects;
  AEGP_MemHandle path = nullptr;
  projects->AEGP_GetProjectByIndex(0, &project);
  projects->AEGP_GetProjectPath(project, &path);
  return path;
}

A_Err Lock() {
  void* start = nullptr;
  return Memory()->AEGP_LockMemHandle(handle, &start);
}

void Unlock() {
  Memory()->AEGP_UnlockMemHandle(handle);
}

void Free() {
  Memory()->AEGP_FreeMemHandle(handle);
}

void* Allocate() {
  void* allocated = nullptr;
  basic->AllocateBlock(8, &allocated);
  return allocated;
}

void CloseProject() {
  AEGP_ProjectH opened = nullptr;
  Projects()->AEGP_NewProject(&opened);
}

A_Err Open(const A_UTF16Char* path) {
  AEGP_ProjectH opened = nullptr;
  return Projects()->AEGP_OpenProjectFromPath(path, &opened);
}

void OpenAgain() {
  const std::u16string path = (std::filesystem::current_path() / "projects/a.aep").u16string();
  Open(reinterpret_cast<const A_UTF16Char*>(path.c_str()));
}

// Has the journal hold a call of the framework, as "PluginIsEnabled, enabled=true".
void WriteJournal(std::string call) {
  for (size_t at = 0; (at = call.find(", ")) != std::string::npos;) call.replace(at, 2, "\t");
  std::ofstream("journal", std::ios::app) << call << '\n';
}

void WriteFiles() {
  const std::string folder = std::filesystem::current_path().string();
  std::ofstream("written") << "in " << folder;
  std::fputs("to the error stream\n", stderr);
  std::filesystem::create_directories("new/folder");
  std::ofstream("new/folder/written") << "deep";
  std::ofstream("dated") << "by the plug-in";
  const utimbuf dates{1'234'567'890, 1'234'567'890};
  utime("dated", &dates);
  onTick = [folder] {
    for (const char* const name : {"given", "written", "new/folder/written", "dated"}) {
      struct stat status {};
      stat(name, &status);
      std::printf("%s/%s, %lld\n", folder.c_str(), name, static_cast<long long>(status.st_mtime));
    }
  };
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

void CallFromTwoThreads() {
  const auto callOften = [] {
    for (int i = 0; i < 1000; ++i) Acquire();
  };
  std::thread other(callOften);
  std::thread another(callOften);
  other.join();
  another.join();
}

// Waits in each way for what never comes. Ends long after the tick.
void WorkInAThread() {
  std::thread([] {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t condition = PTHREAD_COND_INITIALIZER;
    sem_t semaphore;
    sem_init(&semaphore, 0, 0);
    pthread_mutex_lock(&mutex);
    std::ofstream done("done");
    const auto wait = [&](const char* what, const auto& until) {
      const auto begin = std::chrono::steady_clock::now();
      const timespec deadline{std::time(nullptr), 50'000'000};
      until(&deadline);
      const bool waits = std::chrono::steady_clock::now() - begin >= 50ms;
      done << what << (waits ? " waits\n" : " doesn't wait\n");
    };
    wait("condition", [&](auto* until) { pthread_cond_timedwait(&condition, &mutex, until); });
    wait("mutex", [&](auto* until) { pthread_mutex_timedlock(&mutex, until); });
    wait("semaphore", [&](auto* until) { sem_timedwait(&semaphore, until); });
    done << "the end\n";
  }).detach();
}

void TellTheTime() {
  timeval day{};
  timespec clock{};
  timespec utc{};
  gettimeofday(&day, nullptr);
  clock_gettime(CLOCK_REALTIME, &clock);
  timespec_get(&utc, TIME_UTC);
  std::printf("it is %ld, %ld, %ld, %ld\n", std::time(nullptr), day.tv_sec, clock.tv_sec,
              utc.tv_sec);
}

// The sum keeps the compiler from making a loop of it.
int OverflowTheStack(int depth) {
  volatile char frame[4096] = {};
  frame[0] = static_cast<char>(depth);
  return depth < 0 ? 0 : OverflowTheStack(depth + 1) + frame[0];
}

desktop::Application::BeginModalSession begin = nullptr;

// Neither event is the dialog's Escape.
desktop::ModalSession SendOtherKeys(desktop::Application& application, desktop::Window& window) {
  desktop::KeyEvent event;
  event.keyCode = 53;
  event.windowNumber = window.windowNumber();
  window.sendEvent(event);
  ++event.windowNumber;
  event.characters = u"\x1b";
  window.sendEvent(event);
  return begin(application, window);
}

desktop::ModalSession BeginNothing(desktop::Application& /*application*/,
                                   desktop::Window& /*window*/) {
  return 0;
}

A_Err Idle(AEGP_GlobalRefcon, AEGP_IdleRefcon, A_long*);

const std::map<std::string, std::function<void()>> kActions{
    // Suites
    {"acquire", Acquire},
    {"release", Release},
    {"acquire when finalised", [] { finally = Acquire; }},
    {"release at exit", [] { atExit.action = Release; }},
    {"release when finalised", [] { finally = Release; }},
    {"call a released suite",
     [] {
       AEGP_Command unused = 0;
       const AEGP_CommandSuite1* const suite = Commands().operator->();
       suite->AEGP_GetUniqueCommand(&unused);
     }},
    {"call an unsupplied function of a released suite",
     [] {
       const AEGP_UtilitySuite3* const suite = Utility().operator->();
       CallUnsupplied(suite->AEGP_GetMainHWND);
     }},
    {"ask for what is missing",
     [] {
       const void* suite = nullptr;
       const Utility utility;
       for (int i = 0; i < 2; ++i) {
         basic->AcquireSuite("AEGP Item Suite", 13, &suite);
         basic->AcquireSuite("AEGP Proj Suite", 6, &suite);
         basic->AcquireSuite("AEGP Utility Suite", 9, &suite);
         CallUnsupplied(utility->AEGP_GetMainHWND);
       }
     }},
    {"need the memory suite at death",
     [] {
       onTick = [] { const Memory memory; };
       onDeath = [] {
         const void* suite = nullptr;
         if (basic->AcquireSuite("AEGP Memory Suite", 1, &suite) != A_Err_NONE) std::abort();
         Release();
       };
     }},

    // Memory
    {"get the path", [] { handle = PathHandle(); }},
    {"get it again", [] { PathHandle(); }},
    {"lock", Lock},
    {"unlock", Unlock},
    {"free", Free},
    {"read it carelessly",
     [] {
       // Forgets the handle if it can't be locked.
       if (Lock() != A_Err_NONE) return;
       Unlock();
       Free();
     }},
    {"write past the handle", [] { reinterpret_cast<volatile char*>(*handle)[2] = 'x'; }},
    {"allocate", [] { block = Allocate(); }},
    {"allocate another", [] { Allocate(); }},
    {"write past the block", [] { static_cast<volatile char*>(block)[8] = 'x'; }},
    {"move the block",
     [] {
       void* moved = nullptr;
       basic->ReallocateBlock(block, 1'000'000, &moved);
       basic->FreeBlock(moved);
     }},
    {"free the block", [] { basic->FreeBlock(block); }},
    {"hold more",
     [] {
       static const std::string held(20'000, 'x');
       open("/dev/null", O_RDONLY);
       std::ofstream("another");
     }},
    {"hold a megabyte more",
     [] {
       static std::vector<std::vector<char>> held;
       held.emplace_back(1'000'000);
     }},
    {"free megabytes and close projects",
     [] {
       for (int i = 0; i < 300; ++i) {
         void* freed = nullptr;
         basic->AllocateBlock(10'000, &freed);
         basic->FreeBlock(freed);
         CloseProject();
       }
     }},

    // Arguments
    {"pass null", [] { Report(nullptr); }},
    {"pass another id", [] { Utility()->AEGP_ReportInfo(77, "who is this"); }},
    {"pass a wild pointer", [] { Report(reinterpret_cast<const A_char*>(8)); }},
    {"pass what looks like a result", [] { basic->ReleaseSuite("suite\nresult: ok", 1); }},
    {"report what isn't UTF-16",
     [] {
       const Suite<AEGP_UtilitySuite6> suite(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion6);
       suite->AEGP_ReportInfoUnicode(pluginId, kHalfAPair);
     }},
    {"open half a pair", [] { idleResult = Open(kHalfAPair); }},
    {"get the second project", [] { Projects()->AEGP_GetProjectByIndex(1, &project); }},
    {"get the project", [] { Projects()->AEGP_GetProjectByIndex(0, &project); }},
    {"make up a project", [] { project = reinterpret_cast<AEGP_ProjectH>(&command); }},
    {"ask for its path",
     [] {
       AEGP_MemHandle path = nullptr;
       Projects()->AEGP_GetProjectPath(project, &path);
     }},
    {"make up preferences",
     [] {
       A_long count = 0;
       const Suite<AEGP_PersistentDataSuite4> suite(kAEGPPersistentDataSuite,
                                                    kAEGPPersistentDataSuiteVersion4);
       suite->AEGP_GetNumSections(reinterpret_cast<AEGP_PersistentBlobH>(&command), &count);
     }},

    // Hooks, menus and undo groups
    {"register twice", [] {}},
    {"register by a command in the entry point", [] {}},
    {"register late", [] { Register()->AEGP_RegisterIdleHook(pluginId, Idle, nullptr); }},
    {"insert an unknown command",
     [] {
       Commands()->AEGP_InsertMenuCommand(3, "Not mine", AEGP_Menu_WINDOW, AEGP_MENU_INSERT_SORTED);
     }},
    {"insert into no menu",
     [] { Commands()->AEGP_InsertMenuCommand(command, "Nowhere", 0, AEGP_MENU_INSERT_SORTED); }},
    {"insert at the top",
     [] {
       Commands()->AEGP_InsertMenuCommand(command, "Top", AEGP_Menu_WINDOW,
                                          AEGP_MENU_INSERT_AT_TOP);
     }},
    {"enable", [] { Commands()->AEGP_EnableCommand(command); }},
    {"enable by a command in the update-menu hook",
     [] {
       onMenu = [] {
         onCommand = [] { Commands()->AEGP_EnableCommand(command); };
         Commands()->AEGP_DoCommand(command);
         onCommand = nullptr;
       };
     }},
    {"remove", [] { Commands()->AEGP_RemoveMenuCommand(command); }},
    {"handle all commands", [] { handlesAll = true; }},
    {"throw in commands", [] { onCommand = [] { throw std::runtime_error("nested"); }; }},
    {"pick within each command",
     [] {
       onCommand = [] {
         Commands()->AEGP_DoCommand(command);
         Commands()->AEGP_DoCommand(command);
       };
     }},
    {"pick", [] { Commands()->AEGP_DoCommand(command); }},
    {"start an undo group", [] { Utility()->AEGP_StartUndoGroup("Undo"); }},
    {"start an undo group when finalised",
     [] { finally = [] { Utility()->AEGP_StartUndoGroup("Undo"); }; }},
    {"end an undo group", [] { Utility()->AEGP_EndUndoGroup(); }},

    // Errors and exceptions
    {"fail", [] { idleResult = 42; }},
    {"report", [] { Report("something is up"); }},
    {"report two lines", [] { Report("one\ntwo"); }},
    {"report at exit", [] { atExit.action = [] { Report("at exit"); }; }},
    {"throw", [] { throw std::runtime_error("boom"); }},
    {"throw an int", [] { throw 516; }},
    {"throw in a thread",
     [] { std::thread([] { throw std::runtime_error("from a [thread]\nof mine"); }).join(); }},

    {"have a thread crash within a call",
     [] {
       std::signal(SIGSEGV, [](int) { std::thread(std::abort).join(); });
       Report(reinterpret_cast<const A_char*>(8));
     }},

    // Ends of the process
    {"crash", [] { raise(SIGSEGV); }},
    {"overflow the stack", [] { OverflowTheStack(0); }},
    {"crash at exit", [] { atExit.action = std::abort; }},
    {"write without end",
     [] { std::ofstream("endless").seekp(1'000'000'000) << "x" << std::flush; }},
    {"exit", [] { std::exit(0); }},
    {"exit in a thread", [] { std::thread([] { std::exit(0); }).join(); }},
    {"exit when finalised", [] { finally = [] { std::exit(0); }; }},
    {"end the process", [] { _exit(3); }},
    {"hang", Hang},
    {"ignore the signal to end", [] { std::signal(SIGQUIT, SIG_IGN); }},
    {"hang when finalised", [] { finally = Hang; }},
    {"interrupt",
     [] {
       kill(getppid(), SIGINT);
       raise(SIGINT);
     }},
    {"close all descriptors", [] { closefrom(STDERR_FILENO + 1); }},
    {"put a pipe in the place of the project",
     [] {
       unlink("projects/a.aep");
       mkfifo("projects/a.aep", 0600);
     }},

    // Other processes and threads
    {"fork", [] { child = fork(); }},
    {"end the parent",
     [] {
       if (child > 0) _exit(0);
     }},
    {"throw in a thread of the child",
     [] {
       if (child == 0) std::thread([] { throw std::runtime_error("from the child"); }).join();
     }},
    // With every descriptor of the process open.
    {"hang in the child",
     [] {
       if (child == 0) Hang();
     }},
    {"wait for the child",
     [] {
       if (child > 0) waitpid(child, nullptr, 0);
     }},
    {"leave a daemon behind", LeaveDaemonBehind},
    {"call from two threads", CallFromTwoThreads},
    {"work in a thread", WorkInAThread},
    {"hold a stream", HoldAStream},

    // What a session sees
    {"tell the time",
     [] {
       TellTheTime();
       onTick = TellTheTime;
     }},
    {"print last words",
     [] {
       std::printf("last words\x1b \xc2\x9b \xc3\xa9 \xff in %s/file",
                   std::filesystem::current_path().c_str());
       std::fputs("and more\n", stderr);
     }},
    {"end no line at exit", [] { atExit.action = [] { std::printf("that's all"); }; }},
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
    {"read", [] { std::puts(std::cin.get() == EOF ? "nothing to read" : "it reads"); }},
    {"end no line", [] { std::printf("no line end"); }},
    {"print much",
     [] {
       std::puts(std::string(300'000, 'x').c_str());
       std::puts("the end");
     }},
    {"print odd bytes", [] { std::puts("\x1b \xff \uFFFE <&>"); }},
    {"report odd bytes", [] { Report("\xff"); }},
    {"write files", WriteFiles},
    {"leave a trace", [] { std::ofstream(std::getenv("TRACE")) << "left"; }},
    {"wait for the trace", [] { std::ifstream(std::getenv("TRACE")).get(); }},
    {"leave the folder", [] { std::filesystem::current_path("/"); }},
    {"send other keys to dialogs",
     [] {
       begin = desktop::Application::sharedApplication().exchangeBeginModalSession(SendOtherKeys);
     }},
    {"keep dialogs from beginning",
     [] { desktop::Application::sharedApplication().exchangeBeginModalSession(BeginNothing); }},

    // Projects and the framework
    {"close the project", CloseProject},
    {"open it again", OpenAgain},
    {"close the project once and for all",
     [] {
       const char* const trace = std::getenv("TRACE");
       if (std::filesystem::exists(trace)) return;
       std::ofstream(trace) << "called";
       CloseProject();
     }},
    {"ask the framework",
     [] {
       void* const framework = dlopen("./Tamberlink.framework/Tamberlink", RTLD_NOW);
       const auto ask =
           reinterpret_cast<uint32_t (*)(bool, bool*)>(dlsym(framework, "PluginIsEnabled"));
       bool enabled = false;
       if (ask(false, &enabled) != 0) Report("the framework fails");
     }},
    {"have Garamond active", [] { std::ofstream("active-fonts") << "Garamond\n"; }},
};

A_Err Idle(AEGP_GlobalRefcon, AEGP_IdleRefcon, A_long*) {
  constexpr std::string_view kCall = "call: ";
  static std::istringstream actions(kBehaviour);
  if (onTick) onTick();
  for (std::string action; std::getline(actions >> std::ws, action, ';');) {
    if (action == "tick") break;
    action.starts_with(kCall) ? WriteJournal(action.substr(kCall.size())) : kActions.at(action)();
  }
  return idleResult;
}

A_Err UpdateMenu(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType) {
  if (onMenu) onMenu();
  return Commands()->AEGP_EnableCommand(command);
}

A_Err Command(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command picked, AEGP_HookPriority,
              A_Boolean, A_Boolean* handled) {
  if (onCommand) onCommand();
  std::printf("command %s\n", picked == command ? "of mine" : std::to_string(picked).c_str());
  if (picked == command || handlesAll) *handled = 1;
  return A_Err_NONE;
}

A_Err Death(AEGP_GlobalRefcon, AEGP_DeathRefcon) {
  if (onDeath) onDeath();
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
  if (kBehaviour == "register twice") suite->AEGP_RegisterIdleHook(id, Idle, nullptr);
  suite->AEGP_RegisterUpdateMenuHook(id, UpdateMenu, nullptr);
  suite->AEGP_RegisterCommandHook(id, AEGP_HP_BeforeAE, AEGP_Command_ALL, Command, nullptr);
  suite->AEGP_RegisterDeathHook(id, Death, nullptr);
  const Commands commands;
  commands->AEGP_GetUniqueCommand(&command);
  if (kBehaviour == "register by a command in the entry point") {
    onCommand = [] {
      static AEGP_Command other = 1'000'000;
      Register()->AEGP_RegisterCommandHook(pluginId, AEGP_HP_BeforeAE, ++other, Command, nullptr);
    };
    commands->AEGP_DoCommand(command);
    onCommand = nullptr;
  }
  return commands->AEGP_InsertMenuCommand(command, "Mine", AEGP_Menu_WINDOW,
                                          AEGP_MENU_INSERT_SORTED);
}
