#pragma once

#include <pthread.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "AE_GeneralPlug.h"
#include "Faults.h"
#include "Findings.h"
#include "Ledger.h"
#include "Suites.h"
#include "Timeline.h"
#include "desktop/Window.h"

namespace host {

/// The name of the host in sessions and on the timeline.
inline constexpr char kHostApplication[] = "host";
/// The class of the host's own dialogs.
inline constexpr char kDialogClass[] = "DVAMacDialog";
/// The id of the plug-in.
inline constexpr AEGP_PluginID kPluginId = 1;

/// The host's preferences: texts by section and key.
using Preferences = std::map<std::pair<std::string, std::string>, std::string>;

// Calls of the plug-in on which it depends what the host allows.
inline constexpr char kEntryPoint[] = "entry point";
inline constexpr char kUpdateMenuHook[] = "update-menu hook";
inline constexpr char kStaticDestructor[] = "static destructor";

/// What a session says of the host.
struct HostSettings {
  int32_t majorVersion = 114;
  int32_t minorVersion = 0;
  std::string language = "en";
  std::string openProjectTitle;   ///< of the open project dialog; empty for the language's
  std::string missingFontsTitle;  ///< of the dialog about missing fonts; empty for the language's
  std::vector<std::pair<std::string, std::string>> windowClasses;  ///< name and base
  std::vector<std::string> applications{"com.apple.dock"};  ///< bundle ids of the others that run
  Preferences preferences;
  bool showsCalls = false;  ///< on the timeline: each call of a suite function, with its result
  bool tolerant = false;    ///< the session goes on where a step can't be played
  bool isTrial = false;     ///< even if tolerant, a call that a fault numbers has to come
};

/// Returns whether the host has the window class.
bool KnowsWindowClass(const HostSettings& settings, std::string_view className);
/// Returns whether the host speaks the language, such as "en".
bool KnowsLanguage(std::string_view language);

/// The module to load, and the name of its entry point.
struct PluginModule {
  std::string path;
  std::string entryPoint = "EntryPointFunc";
};

/// Thrown if a session can't go on, after the reason was told.
struct SessionEnded {};

/// The host's current project. There always is one. One that was never saved has no path.
struct Project {
  std::string path;              ///< UTF-8, absolute
  std::u16string pathForPlugin;  ///< differs from `path` only by a session's wish
  bool dirty = false;
  std::vector<std::string> fonts;
  std::vector<std::string> missingFonts;  ///< decided when the project opened
  AEGP_ProjectH handle = nullptr;         ///< by which plug-ins name it
};

/// A project takes the place of another, or gets another path.
struct ProjectChange {
  std::string closed;  ///< the path of the project before; empty if it was never saved
  std::string opened;  ///< the path of the new one
  bool byPlugin = false;
  bool isSave = false;  ///< the project stays
};

template <typename Function, typename Refcon>
struct Hook {
  Function function = nullptr;
  Refcon refcon = nullptr;

  bool operator==(const Hook&) const = default;
};

struct CommandHook : Hook<AEGP_CommandHook, AEGP_CommandRefcon> {
  AEGP_HookPriority priority = 0;
  AEGP_Command command = AEGP_Command_ALL;

  /// Whatever the priority.
  bool operator==(const CommandHook& other) const {
    return Hook::operator==(other) && command == other.command;
  }
};

struct Hooks {
  std::vector<Hook<AEGP_IdleHook, AEGP_IdleRefcon>> idle;
  std::vector<Hook<AEGP_UpdateMenuHook, AEGP_UpdateMenuRefcon>> updateMenu;
  std::vector<Hook<AEGP_DeathHook, AEGP_DeathRefcon>> death;
  std::vector<CommandHook> command;  ///< in the order of their calls
};

/// A menu item of a plug-in.
struct MenuItem {
  std::string text;
  bool enabled = false;
  bool checked = false;
};

/// The menu items of plug-ins.
struct Menus {
  /// The host's own commands have smaller ids.
  static constexpr AEGP_Command kLastHostCommand = 10'000;

  AEGP_Command lastCommand = kLastHostCommand;  ///< that was given out
  std::map<AEGP_Command, MenuItem> items;
  std::set<AEGP_Command> refused;  ///< those for whose items AEGP_InsertMenuCommand failed
};

/// Returns a NUL-terminated UTF-16 text as UTF-8, or nothing if it isn't UTF-16.
std::optional<std::string> ToUTF8(const A_UTF16Char* text);

/// The host application, without windows. There is one in a process. It is never destroyed: a
/// module may call it until the process ends.
class Host {
 public:
  /// Sets up the host without a plug-in. The working directory must be the session folder. `flight`
  /// outlives the host.
  void prepare(const HostSettings& settings, const PluginModule& module, int pipe,
               FlightRecord& flight);
  /// Loads the plug-in's module and calls its entry point. Never unloads it.
  void start();
  /// Plays an idle tick: calls the idle hooks.
  void idle();
  /// Moves the virtual time on.
  void advanceTime(int64_t seconds);
  /// Waits for a time of the real clock, which the time limit doesn't count.
  void pause(std::chrono::milliseconds time);
  /// Disables all menu items of plug-ins, then calls the update-menu hooks.
  void drawMenus();
  /// Offers a command to the command hooks. Returns whether one of them has handled it.
  bool runCommand(AEGP_Command command);
  /// Opens a new project in place of the current one.
  void newProject();
  /// Changes the project for the user, which makes it dirty.
  void editProject();
  /// Opens the project in place of the current one. Fails, and changes nothing, without such a
  /// file.
  A_Err openProject(const std::string& path);
  /// Writes the project to `path`, which becomes its path. The file's date is the virtual time.
  void saveProject(const std::string& path);
  /// Shows a modal dialog until it is closed.
  void showDialog(const std::string& title, const std::string& className = kDialogClass);
  /// Scans the active fonts.
  void updateFontList();
  /// Brings an application to the front for the user. Starts it if it doesn't run.
  void bringToFront(const std::string& bundleIdentifier);
  /// Calls the death hooks.
  void quit();

  /// Begins a step, by its place in the session file.
  void beginStep(std::string_view place);
  /// Ends the steps, played or not. From now on the plug-in's static objects are destroyed, and its
  /// module is finalised.
  void beginDestructors();
  /// Tells what the plug-in has leaked. To be called after the last call of the plug-in.
  void finish();

  /// Tells a fact that may be a finding, and where it happened: the hook, the tick, the host call
  /// and the step. `code` is the error that the user saw, if any. The session goes on.
  void report(Finding finding, const std::string& text, FactNames names = {}, int64_t code = 0);
  /// Tells that the call of the plug-in's that is under way is a misuse. `detail` is the name of
  /// the argument or the like. Returns the error that the call answers: 0 if the finding is a
  /// warning.
  A_Err misused(Finding finding, std::string_view what, std::string detail = {});
  /// Tells that the plug-in calls the host from another thread than the main one, with a backtrace.
  /// For any thread. `suite` is its table. Returns the error that the call answers.
  A_Err reportFromOtherThread(const void* suite, std::string_view function) const;
  /// Counts a call of a function that can fail. Returns the error that the session wants from it,
  /// or 0.
  A_Err takeFault(std::string_view function);
  /// Tells that a call fails because the session wants it. `takeFault` does so by itself: this is
  /// for calls of the framework and for suites that are refused.
  void tellFailure(std::string_view function);
  /// Tells that a function of the host answers an error to the plug-in.
  void tellAnswer(A_Err error);
  /// Adds the line to the timeline, once.
  void noteOnce(Actor actor, const std::string& text);
  /// Returns the call of the plug-in's that is under way, which gives it something.
  Origin origin() const { return {timeline.call->function.data(), mFlight->hook, timeline.tick}; }

  Project& project() { return mProject; }
  std::string frontApplication() const;
  /// For a function that calls hooks: returns whether it mustn't, because too many are under way,
  /// each within the one before. That is a misuse, once.
  bool refusesMoreHooks();
  /// Returns the absolute path of a file in the session folder. The plug-in may have changed the
  /// working directory.
  std::string inFolder(const std::string& path) const { return (mFolder / path).string(); }
  /// Returns the session folder.
  const std::filesystem::path& folder() const { return mFolder; }
  const HostSettings& settings() const { return mSettings; }
  FlightRecord& flight() { return *mFlight; }
  bool isMainThread() const { return pthread_equal(pthread_self(), mMainThread) != 0; }
  /// Returns whether this call of the plug-in, such as `kEntryPoint`, is under way. Others may be,
  /// within it.
  bool isIn(const char* hook) const;

  Timeline timeline;
  Faults faults;
  Ledger ledger;
  Menus menus;
  Hooks hooks;
  Preferences preferences;
  int undoGroups = 0;              ///< those that were started and not ended
  bool commandWasHandled = false;  ///< of the command that the user picked last
  int64_t failures = 0;            ///< calls that the session made fail
  int64_t errorsShown = 0;         ///< to the user
  /// Hears of each change of the project.
  std::function<void(const ProjectChange&)> projectChanged = [](const ProjectChange&) {};
  /// Runs after each tick.
  std::function<void()> afterTick = [] {};

 private:
  void setUpDesktop();
  void addApplication(const std::string& bundleIdentifier);
  void scanFonts();
  int64_t runModal(desktop::Window& window);
  /// Calls the plug-in. `hook` is static text. Shows an error to the user. Ends the session after
  /// an exception.
  void callPlugin(const char* hook, const std::function<A_Err()>& call);
  void enterPlugin(const char* hook);
  void leavePlugin();
  bool isInPlugin() const { return !mCalls.empty(); }
  void replaceProject(Project project);
  void reportLostWork(const ProjectChange& change);
  /// Has the timeline show the project's state.
  void showProject();
  void reportLeaks();

  HostSettings mSettings;
  PluginModule mModule;
  FlightRecord* mFlight = nullptr;
  const pthread_t mMainThread = pthread_self();
  std::filesystem::path mFolder;
  AEGP_GlobalRefcon mGlobalRefcon = nullptr;
  std::uintmax_t mThreads = 1;      ///< of this process before the plug-in was loaded
  std::vector<const char*> mCalls;  ///< of the plug-in under way, each within the one before
  bool mNestsTooDeep = false;       ///< the plug-in, since the outermost of them began
  bool mEnding = false;             ///< an exception has left the plug-in
  bool mIsOver = false;             ///< the plug-in is gone
  int64_t mVisit = 0;  ///< counts the calls of the plug-in, without those within others
  std::set<std::string> mNotes;
  Project mProject;
  bool mPluginHasClosed = false;  ///< a project, and hasn't opened one since
  std::set<std::string> mKnownFonts;
  std::deque<desktop::WindowClass> mWindowClasses;
  int32_t mApplications = 0;  ///< how many run beside the host
};

/// Returns the host of this process. To be called first by the main thread.
Host& TheHost();

}  // namespace host
