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

/// How the host's own application is called where applications are named.
inline constexpr char kHostApplication[] = "host";

struct HostSettings {
  int32_t majorVersion = 114;
  int32_t minorVersion = 0;
  std::string language = "en";
  std::vector<std::string> applications{"com.apple.dock"};  ///< others that run, by bundle id
  std::map<std::string, std::map<std::string, std::string>> preferences;  ///< by section and key
};

/// Thrown when a session can't go on; the reason has been reported as a shortfall.
struct SessionEnded {};

/// The host's current project. There is always one; one that was never saved has no path.
struct Project {
  std::string path;             ///< UTF-8, absolute
  std::u16string reportedPath;  ///< what plug-ins are told; the same, but for a fault
  bool dirty = false;
  std::vector<std::string> fonts;
  std::vector<std::string> missingFonts;  ///< decided when the project opened

  AEGP_ProjectH handle() { return &mOpaque; }

 private:
  _AEGP_Project* mOpaque = nullptr;
};

/// The commands of the host itself.
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
  std::vector<CommandHook> command;  ///< in the order in which they are called

  void addCommandHook(const CommandHook& hook);
};

/// The host application, without a face. One for each process, and destroyed after everything that
/// a plug-in destroys at process exit: it then reports what the plug-in has left.
class Host {
 public:
  Host() = default;
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Comes up in the working directory, which is the session folder, without a plug-in.
  void prepare(const HostSettings& settings, const std::string& pluginModule, int reportPipe,
               bool timelineShown);
  /// Loads the plug-in's module, which is never unloaded, and calls its entry point.
  void start();
  void idle();
  /// Has plug-ins enable their menu items.
  void drawMenus();
  /// Offers a command to the command hooks; true when one of them has handled it.
  bool runCommand(AEGP_Command command);
  void newProject();
  /// An error, and everything as it was, when there is no such file.
  A_Err openProject(const std::string& path);
  /// Writes the project to `path`, which becomes its path, with the virtual time as its date.
  void saveProject(const std::string& path);
  /// Shows a modal dialog until it is closed.
  void showDialog(const std::string& title, const desktop::WindowClass& windowClass);
  /// Scans the active fonts.
  void updateFontList();
  /// The user brings an application to the front, and starts it if it doesn't run.
  void bringToFront(const std::string& bundleIdentifier);
  void quit();

  /// Tells of something that isn't as it has to be. The session fails, and goes on.
  void fallShort(const std::string& what) const { mReporter.send(ReportKind::shortfall, what); }
  /// The same, and the session ends here.
  [[noreturn]] void giveUp(const std::string& what) const;
  void reportStep(const std::string& where) const { mReporter.send(ReportKind::step, where); }
  /// Adds that line to the timeline unless it was there before.
  void noteRefusal(const std::string& text);

  Project& project() { return *mProject; }
  std::string frontApplication() const;
  /// Null when there is none.
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
  bool commandWasHandled = false;  ///< the latest command that a user picked

 private:
  void setUpDesktop();
  void addApplication(const std::string& bundleIdentifier);
  int64_t runModal(desktop::Window& window);
  /// Calls into the plug-in. An error is shown to the user; an exception ends the session.
  void callPlugin(const char* what, const std::function<A_Err()>& call);

  Reporter mReporter;
  HostSettings mSettings;
  std::string mPluginModule;
  std::unique_ptr<Project> mProject = std::make_unique<Project>();
  std::set<std::string> mKnownFonts;
  std::set<std::string> mRefusals;
  std::map<std::string, int32_t> mApplications;  ///< process id by bundle id
  bool mUserSwitches = false;
  AEGP_GlobalRefcon mGlobalRefcon = nullptr;
  _AEGP_PersistentBlob* mPreferencesOpaque = nullptr;
};

/// The one host of this process.
Host& TheHost();

}  // namespace host
