#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "AE_GeneralPlug.h"
#include "Faults.h"
#include "MemoryHandles.h"
#include "Menus.h"
#include "Reporter.h"
#include "Suites.h"
#include "Timeline.h"
#include "desktop/Window.h"

namespace host {

/// The name of the host in sessions and on the timeline.
inline constexpr char kHostApplication[] = "host";

struct HostSettings {
  int32_t majorVersion = 114;
  int32_t minorVersion = 0;
  std::string language = "en";
  std::vector<std::string> applications{"com.apple.dock"};  ///< bundle ids of the others that run
  std::map<std::string, std::map<std::string, std::string>> preferences;  ///< by section and key
};

/// Thrown if a session can't go on, after the failure has been reported.
struct SessionEnded {};

/// The host's current project. There always is one. One that was never saved has no path.
struct Project {
  std::string path;             ///< UTF-8, absolute
  std::u16string reportedPath;  ///< for plug-ins; differs from `path` only by a session's wish
  bool dirty = false;
  std::vector<std::string> fonts;
  std::vector<std::string> missingFonts;  ///< decided when the project opened

  AEGP_ProjectH handle() { return &mOpaque; }

 private:
  _AEGP_Project* mOpaque = nullptr;
};

/// The host's own commands.
enum HostCommand : AEGP_Command { kOpen = 1, kClose, kSave, kSaveAs, kQuit };

template <typename Function, typename Refcon>
struct Hook {
  Function function = nullptr;
  Refcon refcon = nullptr;
};

struct CommandHook : Hook<AEGP_CommandHook, AEGP_CommandRefcon> {
  AEGP_HookPriority priority = 0;
  AEGP_Command command = AEGP_Command_ALL;
};

struct Hooks {
  std::vector<Hook<AEGP_IdleHook, AEGP_IdleRefcon>> idle;
  std::vector<Hook<AEGP_UpdateMenuHook, AEGP_UpdateMenuRefcon>> updateMenu;
  std::vector<Hook<AEGP_DeathHook, AEGP_DeathRefcon>> death;
  std::vector<CommandHook> command;  ///< in the order of their calls

  void addCommandHook(const CommandHook& hook);
};

/// The host application, without windows. There is one in a process. It is destroyed after the
/// static objects of a plug-in, and then reports what the plug-in has leaked.
class Host {
 public:
  Host() = default;
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Sets up the host without a plug-in. The working directory must be the session folder.
  void prepare(const HostSettings& settings, const std::string& pluginModule, int reportPipe,
               bool timelineShown);
  /// Loads the plug-in's module and calls its entry point. Never unloads it.
  void start();
  void idle();
  /// Disables all menu items of plug-ins, then calls the update-menu hooks.
  void drawMenus();
  /// Offers a command to the command hooks. Returns whether one of them has handled it.
  bool runCommand(AEGP_Command command);
  void newProject();
  /// Opens the project in place of the current one. Fails, and changes nothing, without such a
  /// file.
  A_Err openProject(const std::string& path);
  /// Writes the project to `path`, which becomes its path. The file's date is the virtual time.
  void saveProject(const std::string& path);
  /// Shows a modal dialog until it is closed.
  void showDialog(const std::string& title, const desktop::WindowClass& windowClass);
  /// Scans the active fonts.
  void updateFontList();
  /// Brings an application to the front for the user. Starts it if it doesn't run.
  void bringToFront(const std::string& bundleIdentifier);
  void quit();

  /// Reports a failure. The session goes on.
  void fail(const std::string& what) const { mReporter.send(ReportKind::failure, what); }
  /// Reports a failure and ends the session.
  [[noreturn]] void giveUp(const std::string& what) const;
  void reportStep(const std::string& where) const { mReporter.send(ReportKind::step, where); }
  /// Adds the line to the timeline, once.
  void noteRefusal(const std::string& text);

  Project& project() { return *mProject; }
  std::string frontApplication() const;
  /// Returns null if there is none.
  const std::string* findPreference(const std::string& section, const std::string& key) const;
  AEGP_PersistentBlobH preferencesHandle() { return &mPreferencesOpaque; }
  const HostSettings& settings() const { return mSettings; }

  Timeline timeline;
  Faults faults;
  MemoryHandles memory;
  SuiteLedger suites;
  Menus menus;
  Hooks hooks;
  std::map<std::string, std::map<std::string, std::string>> preferences;
  bool commandWasHandled = false;  ///< of the command that the user picked last

 private:
  void setUpDesktop();
  void addApplication(const std::string& bundleIdentifier);
  int64_t runModal(desktop::Window& window);
  /// Calls the plug-in. Shows an error to the user. Ends the session after an exception.
  void callPlugin(const char* what, const std::function<A_Err()>& call);

  Reporter mReporter;
  HostSettings mSettings;
  std::string mPluginModule;
  std::unique_ptr<Project> mProject = std::make_unique<Project>();
  std::set<std::string> mKnownFonts;
  std::set<std::string> mRefusals;
  std::map<std::string, int32_t> mApplications;  ///< process ids by bundle id
  bool mUserSwitches = false;
  AEGP_GlobalRefcon mGlobalRefcon = nullptr;
  _AEGP_PersistentBlob* mPreferencesOpaque = nullptr;
};

/// Returns the host of this process.
Host& TheHost();

}  // namespace host
