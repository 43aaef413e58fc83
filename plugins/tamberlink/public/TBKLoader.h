#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <type_traits>

#include "CoreErrorCodes.h"

/// The buffer of a document's identifier. The framework may fill it without a terminator.
using TamberlinkDocumentId = std::array<char, 256>;

/// The one door to the framework `Tamberlink`: finds it, loads it, and holds its operations as
/// function pointers. Main thread only.
///
/// The instance lives until the process ends, and the framework stays loaded with it. Callers ask
/// for the instance at each use and call through `CallTamberlink`.
///
/// Paths are NUL-terminated UTF-8, borrowed for the call. Buffers are the caller's: an `id` is a
/// `TamberlinkDocumentId`, a `list` has 131072 bytes and may come back without a terminator, a
/// `reply` has 32767 bytes. A `size` comes in as the size of the buffer. The codes are those of
/// `CoreErrorCodes` and its like.
///
/// A function pointer is null when the framework lacks the export of that name. Exports that nobody
/// calls have no signature here.
class TBKLoader {
 public:
  /// Activates the fonts in `list`; `count` says how many.
  uint32_t (*pfActivateChosenFonts)(const char* path, char* list, int32_t* count);
  void (*pfCreateMenusFromJSONBuffer)();
  void (*pfGetAPIVersion)();
  /// Fills `id`.
  uint32_t (*pfGetIDForDocument)(const char* path, char* id, uint64_t* size);
  void (*pfGetMenus)();
  void (*pfGetSettings)();
  void (*pfGetSocketPort)();
  /// The document at `path` is closed, or saved. The caller zeroes `id`.
  uint32_t (*pfHandleCloseDocument)(const char* path, char* id);
  /// Fills `id`.
  uint32_t (*pfHandleCreateNewDocument)(char* id, uint64_t* size);
  void (*pfHandleMenuSelection)();
  /// Leaves in `list` the fonts that need the user, by the result's code, and in `count` how many
  /// were activated.
  uint32_t (*pfHandleOpenExistingDocument)(const char* path, char* list, uint64_t* size,
                                           int32_t* count);
  /// See `pfHandleCloseDocument`.
  uint32_t (*pfHandleSaveDocument)(const char* path, char* id);
  void (*pfIdleEvent)();
  /// The first call, by which the caller says who it is.
  uint32_t (*pfInitializeTamberlinkInterface)(const char* bundleId, const char* version);
  /// Returns when the user is done; `start` says whether fonts are to be activated anew.
  uint32_t (*pfInvokeCommandDialog)(const char* id, char* reply, bool* start);
  /// Returns when the user is done; leaves the chosen fonts in `list`.
  uint32_t (*pfInvokeResolveDialog)(char* list, uint64_t* size);
  /// Returns when the user is done.
  uint32_t (*pfInvokeRestrictedFontsDialog)(const char* path, char* list);
  /// May leave `enabled` as it is.
  uint32_t (*pfPluginIsEnabled)(bool showMessage, bool* enabled);
  void (*pfProcessPanelMessages)();
  void (*pfRegisterPlugPlug)();
  /// Gives the document of that `id` its path.
  uint32_t (*pfSetPathForDocument)(const char* path, const char* id);
  /// The last call.
  uint32_t (*pfTerminateTamberlinkInterface)();
  void (*pfUpdateDocumentFontUsage)();
  void (*pfSetRebuildWorkgroupsMenuCallback)();
  /// Tells the user that nobody is logged in.
  uint32_t (*pfShowNotLoggedInMessageBox)();
  /// Whether that message is to be shown.
  uint32_t (*pfShouldShowLogin)(bool* show);

  /// The path that was loaded.
  std::string frameworkPath;
  /// What the framework declares, cut to 1023 bytes; empty when it declares nothing.
  std::string frameworkVersion;
  /// How many of the exports the framework lacks.
  int32_t missingFunctionCount = 0;

  virtual ~TBKLoader();
  TBKLoader(const TBKLoader&) = delete;
  TBKLoader& operator=(const TBKLoader&) = delete;

  /// The instance, or null when the framework can't be opened. The first call searches and loads;
  /// so does each call after a failure.
  static TBKLoader* GetSharedInstance() {
    return sSharedInstance ? sSharedInstance : FindAndLoadSharedInstance();
  }

  /// Opens the framework at that path unless there is an instance, and returns the instance, or
  /// null.
  static TBKLoader* GetThisSharedInstance(const std::string& frameworkPath);

  /// Fills the table from `bundle`, a handle of `LoadDllOrFramework`, and counts what is missing.
  /// Null clears the table.
  static void ResetFunctionPointers(TBKLoader* loader, const void* bundle);

  /// Whether all members are non-null, or all null. Traces each that isn't as stated. The last two
  /// members aren't looked at.
  bool VerifyThatAllMembersAre(bool nonNull);

 private:
  TBKLoader();
  static TBKLoader* FindAndLoadSharedInstance();

  static TBKLoader* sSharedInstance;
};

/// Calls the framework's operation behind `member`. Where the framework or the operation is
/// missing, answers `CoreErrorCodes::kNotImplemented` and leaves every out-parameter as it was.
template <class... Parameters>
uint32_t CallTamberlink(uint32_t (*TBKLoader::*member)(Parameters...),
                        std::type_identity_t<Parameters>... arguments) {
  const TBKLoader* loader = TBKLoader::GetSharedInstance();
  if (!loader || !(loader->*member)) return CoreErrorCodes::kNotImplemented;
  return (loader->*member)(arguments...);
}

/// Asks the framework whether the plug-in is enabled. Writes its answer to `enabled`, which a
/// framework may leave as it is. Writes false without the operation: a framework that can't be
/// loaded has none, and could put nothing in the place of the host's dialog.
void AskWhetherPluginIsEnabled(bool showMessage, bool* enabled);
