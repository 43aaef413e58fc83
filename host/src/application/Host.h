#pragma once

#include <pthread.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "AE_AdvEffectSuites.h"
#include "AE_GeneralPlug.h"
#include "Faults.h"
#include "FileDates.h"
#include "Findings.h"
#include "Ledger.h"
#include "Memory.h"
#include "Menus.h"
#include "Suites.h"
#include "Timeline.h"
#include "Wire.h"
#include "desktop/Window.h"

namespace host {

/// The name of the host in sessions and on the timeline.
inline constexpr char kHostApplication[] = "host";
/// The id of the plug-in.
inline constexpr AEGP_PluginID kPluginId = 1;

/// The host's preferences: texts by section and key.
using Preferences = std::map<std::pair<std::string, std::string>, std::string>;

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
};

/// Returns whether the host has the window class.
bool KnowsWindowClass(const HostSettings& settings, std::string_view className);

/// The module to load, and the name of its entry point.
struct PluginModule {
  std::string path;
  std::string entryPoint = "EntryPointFunc";
};

/// Thrown if a session can't go on, after the finding has been reported.
struct SessionEnded {};

/// Thrown if a step can't be played at this point.
struct StepImpossible {
  std::string why;
};

/// The host's current project. There always is one. One that was never saved has no path.
struct Project {
  std::string path;             ///< UTF-8, absolute
  std::u16string reportedPath;  ///< for plug-ins; differs from `path` only by a session's wish
  bool dirty = false;
  std::vector<std::string> fonts;
  std::vector<std::string> missingFonts;  ///< decided when the project opened

  AEGP_ProjectH handle = nullptr;  ///< by which plug-ins name it
};

/// A project takes the place of another, or gets another path.
struct ProjectChange {
  std::string closed;  ///< the path of the project before; empty if it was never saved
  std::string opened;  ///< the path of the new one
  bool byPlugin = false;
  bool isSave = false;  ///< the project stays
};

/// The host's own commands.
enum HostCommand : AEGP_Command { kOpen = 1, kClose, kSave, kSaveAs, kQuit };

template <typename Function, typename Refcon>
struct Hook {
  Function function = nullptr;
  Refcon refcon = nullptr;

  bool operator==(const Hook&) const = default;
};

struct CommandHook : Hook<AEGP_CommandHook, AEGP_CommandRefcon> {
  AEGP_HookPriority priority = 0;
  AEGP_Command command = AEGP_Command_ALL;

  bool operator==(const CommandHook&) const = default;
};

struct Hooks {
  std::vector<Hook<AEGP_IdleHook, AEGP_IdleRefcon>> idle;
  std::vector<Hook<AEGP_UpdateMenuHook, AEGP_UpdateMenuRefcon>> updateMenu;
  std::vector<Hook<AEGP_DeathHook, AEGP_DeathRefcon>> death;
  std::vector<CommandHook> command;  ///< in the order of their calls
};

/// Returns a NUL-terminated UTF-16 text as UTF-8, or nothing if it isn't UTF-16.
std::optional<std::string> ToUTF8(const A_UTF16Char* text);

/// The host application, without windows. There is one in a process. It is never destroyed: a
/// module may call it until the process ends.
class Host {
 public:
  Host() { setProject(std::make_unique<Project>()); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Sets up the host without a plug-in. The working directory must be the session folder. `flight`
  /// outlives the host.
  void prepare(const HostSettings& settings, const PluginModule& module, int reportPipe,
               FlightRecord& flight);
  /// Loads the plug-in's module and calls its entry point. Never unloads it.
  void start();
  void idle();
  /// Moves the virtual time on.
  void advanceTime(int64_t seconds);
  /// Waits for a time of the real clock, which the time limit doesn't count.
  void pause(std::chrono::milliseconds time);
  /// Disables all menu items of plug-ins, then calls the update-menu hooks.
  void drawMenus();
  /// Offers a command to the command hooks. Returns whether one of them has handled it.
  bool runCommand(AEGP_Command command);
  void newProject();
  /// Changes the project for the user, which makes it dirty.
  void editProject();
  /// Opens the project in place of the current one. Fails, and changes nothing, without such a
  /// file.
  A_Err openProject(const std::string& path);
  /// Writes the project to `path`, which becomes its path. The file's date is the virtual time.
  void saveProject(const std::string& path);
  /// Shows the open project dialog until it is closed.
  void showOpenProjectDialog();
  /// Shows a modal dialog until it is closed.
  void showDialog(const std::string& title, const std::string& className);
  /// Scans the active fonts.
  void updateFontList();
  /// Brings an application to the front for the user. Starts it if it doesn't run.
  void bringToFront(const std::string& bundleIdentifier);
  void quit();

  /// Notes that a step begins, by its place in the session file.
  void beginStep(std::string_view place);
  /// Notes that a step has been played.
  void endStep() { ++mFlight->stepsPlayed; }
  /// Tells the process that waits that all steps were played.
  void endSteps() const;
  /// Tells the process that waits that the session is over, played or not. From now on the
  /// plug-in's static objects are destroyed, and its module is finalised.
  void beginDestructors();
  /// Tells what the plug-in has leaked. To be called after the
  /// last call of the plug-in.
  void finish();
  /// Has `check` run after the last call of the plug-in, before `finish` does its work.
  void beforeFinish(std::function<void()> check) { mFinalChecks.push_back(std::move(check)); }
  /// Tells a fact that may be a finding, with where it happened. The session goes on.
  void report(Finding finding, std::string text, FactNames names = {}) {
    tell(finding, std::move(text), std::move(names), where());
  }
  /// Tells that the call of the plug-in's that is under way is a misuse. `detail` is the name of
  /// the argument or the like. Returns the error that the call answers: 0 if the finding is a
  /// warning.
  A_Err misused(Finding finding, std::string_view what, std::string detail = {});
  /// Tells that the plug-in calls the host from another thread than the main one, with a backtrace.
  /// For any thread. `suite` is its table. Returns the error that the call answers.
  A_Err reportFromOtherThread(const void* suite, std::string_view function) const;
  /// Tells what an `expect` at this place in the session file expects of the facts that its key is
  /// about.
  void expectFacts(const std::string& key, const std::string& place,
                   std::vector<std::string> texts);
  /// Adds a call of the plug-in's to the timeline, if the session shows calls.
  void showCall(const RunningCall& running, A_Err result, bool isSupplied = true);
  /// Tells that a call fails because the session wants it.
  void countFailure(std::string_view function);
  /// How many calls have failed.
  int64_t failures() const { return mFailures; }
  /// Tells that a function of the host answers an error to the plug-in.
  void countAnswer(A_Err error);
  /// How many errors the user saw.
  int64_t errorsShown() const { return mErrorsShown; }
  /// Has `listener` hear of each change of the project.
  void watchProjects(std::function<void(const ProjectChange&)> listener) {
    mProjectListeners.push_back(std::move(listener));
  }

  /// Reports a finding, with where it happened, and ends the session.
  [[noreturn]] void giveUp(Finding finding, const std::string& text);
  /// Says for a finding where the session is: the hook, the tick, the host call and the step.
  std::string where() const;
  /// Adds the line to the timeline, once.
  void noteOnce(Actor actor, const std::string& text);
  /// Returns the call of the plug-in's that is under way, which gives it something.
  Origin origin() const { return {timeline.call->function.data(), mHook, timeline.tick}; }

  const Project& project() const { return *mProject; }
  /// Has plug-ins get another path of the project.
  void reportPath(std::u16string path) { mProject->reportedPath = std::move(path); }
  std::string frontApplication() const;
  /// For a function that calls hooks: returns whether it mustn't, because too many are under way,
  /// each within the one before. That is a misuse, once.
  bool refusesMoreHooks();
  /// Returns the absolute path of a file in the session folder. The plug-in may have changed the
  /// working directory.
  std::string inFolder(const std::string& path) const;
  /// Returns the session folder.
  const std::filesystem::path& folder() const { return mFolder; }
  const HostSettings& settings() const { return mSettings; }
  FlightRecord& flight() { return *mFlight; }
  bool isMainThread() const { return pthread_equal(pthread_self(), mMainThread) != 0; }
  /// Whether the session is over, and the plug-in's static objects are being destroyed.
  bool isGone() const { return mIsGone; }
  /// Whether the entry point is running.
  bool isStarting() const { return mStarting; }
  /// Whether the update-menu hooks are running.
  bool isUpdatingMenus() const { return mUpdatingMenus; }

  Timeline timeline;
  Faults faults;
  Ledger ledger;
  Memory memory;
  Menus menus;
  Hooks hooks;
  Preferences preferences;
  FileDates fileDates;
  int undoGroups = 0;              ///< those that were started and not ended
  bool commandWasHandled = false;  ///< of the command that the user picked last

 private:
  void setUpDesktop();
  void addApplication(const std::string& bundleIdentifier);
  void showMissingFontsDialog();
  int64_t runModal(desktop::Window& window);
  void* loadModule();
  [[noreturn]] void failToLoad(const std::string& why) const;
  /// Calls the plug-in. `hook` is static text. Shows an error to the user. Ends the session after
  /// an exception.
  void callPlugin(const char* hook, const std::function<A_Err()>& call);
  void enterPlugin(const char* hook);
  void leavePlugin(const char* outerHook);
  /// Gives the project its handle.
  void setProject(std::unique_ptr<Project> project);
  void replaceProject(std::unique_ptr<Project> project);
  void reportError(const char* hook, A_Err result);
  void reportLostWork(const ProjectChange& change);
  /// Tells the timeline the project's state.
  void noteProject();
  void reportLeaks();
  void tell(Finding finding, std::string text, FactNames names, std::string where,
            int64_t code = 0);

  Wire mWire;
  HostSettings mSettings;
  PluginModule mModule;
  FlightRecord* mFlight = nullptr;
  pthread_t mMainThread{};
  const char* mHook = "";  ///< that is running; empty in the host itself
  int mDepth = 0;  ///< how many calls of the plug-in are under way, each within the one before
  bool mNestsTooDeep = false;  ///< the plug-in, since the outermost of them began
  std::filesystem::path mFolder;
  bool mEnding = false;  ///< an exception has left the plug-in
  bool mIsGone = false;
  bool mStarting = false;
  size_t mThreads = 1;  ///< of this process before the plug-in was loaded
  bool mUpdatingMenus = false;
  std::unique_ptr<Project> mProject;
  /// What the handles of projects point to. None is used again soon, so that one of a closed
  /// project is known.
  std::array<_AEGP_Project*, 512> mProjectSlots{};
  size_t mNextSlot = 0;
  std::set<std::string> mKnownFonts;
  std::set<std::string> mNotes;
  int64_t mFailures = 0;
  int64_t mVisit = 0;  ///< counts the calls of the plug-in, without those within others
  int64_t mErrorsShown = 0;
  std::vector<std::function<void(const ProjectChange&)>> mProjectListeners;
  std::vector<std::function<void()>> mFinalChecks;
  bool mPluginHasClosed = false;  ///< a project, and hasn't opened one since
  std::deque<desktop::WindowClass> mWindowClasses;
  std::map<std::string, int32_t> mApplications;  ///< process ids by bundle id
  bool mUserSwitches = false;
  AEGP_GlobalRefcon mGlobalRefcon = nullptr;
};

/// Returns the host of this process.
Host& TheHost();

}  // namespace host
