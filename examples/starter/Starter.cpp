// A plug-in with one menu item. It counts in the host's preferences how often the item is picked.

#include "AE_GeneralPlug.h"

namespace {

SPBasicSuite* basic = nullptr;
AEGP_Command command = 0;

// Holds a suite of the host for as long as it lives.
template <typename Table>
class Suite {
 public:
  Suite(const char* name, int32 version) : mName(name), mVersion(version) {
    mError = basic->AcquireSuite(name, version, &mTable);
  }
  ~Suite() {
    if (mError == A_Err_NONE) basic->ReleaseSuite(mName, mVersion);
  }
  Suite(const Suite&) = delete;
  Suite& operator=(const Suite&) = delete;

  // Why the host has no such suite, or 0. The suite must not be used then.
  A_Err error() const { return mError; }
  const Table* operator->() const { return static_cast<const Table*>(mTable); }

 private:
  const char* mName;
  int32 mVersion;
  const void* mTable = nullptr;
  A_Err mError = A_Err_NONE;
};

A_Err CountPick() {
  const Suite<AEGP_PersistentDataSuite3> preferences("AEGP Persistent Data Suite", 3);
  if (preferences.error()) return preferences.error();
  AEGP_PersistentBlobH blob = nullptr;
  A_long count = 0;
  A_Err error = preferences->AEGP_GetApplicationBlob(&blob);
  if (!error) error = preferences->AEGP_GetLong(blob, "Starter", "picked", 0, &count);
  if (!error) error = preferences->AEGP_SetLong(blob, "Starter", "picked", count + 1);
  return error;
}

// A menu item is disabled unless it is enabled each time that menus are drawn.
A_Err UpdateMenu(AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType) {
  const Suite<AEGP_CommandSuite1> commands("AEGP Command Suite", 1);
  if (commands.error()) return commands.error();
  return commands->AEGP_EnableCommand(command);
}

A_Err Command(AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command picked, AEGP_HookPriority,
              A_Boolean, A_Boolean* handled) {
  if (picked != command) return A_Err_NONE;
  *handled = 1;
  return CountPick();
}

A_Err AddMenuItem() {
  const Suite<AEGP_CommandSuite1> commands("AEGP Command Suite", 1);
  if (commands.error()) return commands.error();
  if (const A_Err error = commands->AEGP_GetUniqueCommand(&command)) return error;
  return commands->AEGP_InsertMenuCommand(command, "Starter", AEGP_Menu_WINDOW,
                                          AEGP_MENU_INSERT_SORTED);
}

A_Err RegisterHooks(AEGP_PluginID id) {
  const Suite<AEGP_RegisterSuite5> hooks("AEGP Register Suite", 6);
  if (hooks.error()) return hooks.error();
  if (const A_Err error = hooks->AEGP_RegisterUpdateMenuHook(id, UpdateMenu, nullptr)) return error;
  return hooks->AEGP_RegisterCommandHook(id, AEGP_HP_BeforeAE, AEGP_Command_ALL, Command, nullptr);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) A_Err EntryPointFunc(SPBasicSuite* basicSuite,
                                                                       A_long, A_long,
                                                                       AEGP_PluginID id,
                                                                       AEGP_GlobalRefcon*) {
  basic = basicSuite;
  if (const A_Err error = AddMenuItem()) return error;
  return RegisterHooks(id);
}
