#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <type_traits>

#include "CoreErrorCodes.h"

/// The buffer of a document's identifier. The framework may fill it without a terminator.
using TamberlinkDocumentId = std::array<char, 256>;

/// Finds and loads the framework `Tamberlink`, and holds its operations as function pointers. Main
/// thread only.
///
/// The instance lives until the process ends, and the framework stays loaded as long. Callers ask
/// for the instance at each use and call through `CallTamberlink`.
///
/// Paths are NUL-terminated UTF-8, borrowed for the call. Buffers are the caller's: an `id` is a
/// `TamberlinkDocumentId`, a `list` has 131072 bytes and may come back without a terminator, a
/// `reply` has 32767 bytes. On entry a `size` is that of the buffer. Results are codes of
/// `CoreErrorCodes` and its like.
///
/// A function pointer is null if the framework lacks the export of that name. Exports that nobody
/// calls have no signature here.
class TBKLoader {
 public:
  /// Activates the fonts in `list` and writes their number to `count`.
  uint32_t (*pfActivateChosenFonts)(const char* path, char* list, int32_t* count);
  void (*pfCreateMenusFromJSONBuffer)();
  void (*pfGetAPIVersion)();
  /// Writes the document's identifier to `id`.
  uint32_t (*pfGetIDForDocument)(const char* path, char* id, uint64_t* size);
  void (*pfGetMenus)();
  void (*pfGetSettings)();
  void (*pfGetSocketPort)();
  /// Tells that the document was closed. The caller zeroes `id`.
  uint32_t (*pfHandleCloseDocument)(const char* path, char* id);
  /// Makes a document without a path and writes its identifier to `id`.
  uint32_t (*pfHandleCreateNewDocument)(char* id, uint64_t* size);
  void (*pfHandleMenuSelection)();
  /// Activates the fonts of a document that was opened, and writes their number to `count`. Writes
  /// those that need the user to `list`: fonts to resolve or restricted fonts, by the result.
  uint32_t (*pfHandleOpenExistingDocument)(const char* path, char* list, uint64_t* size,
                                           int32_t* count);
  /// Tells that the document was saved. The caller zeroes `id`.
  uint32_t (*pfHandleSaveDocument)(const char* path, char* id);
  void (*pfIdleEvent)();
  /// Introduces the caller. Comes before all other calls.
  uint32_t (*pfInitializeTamberlinkInterface)(const char* bundleId, const char* version);
  /// Runs the command dialog. Writes to `start` whether to activate the document's fonts again.
  uint32_t (*pfInvokeCommandDialog)(const char* id, char* reply, bool* start);
  /// Offers the fonts in `list` to the user and leaves the chosen ones in it.
  uint32_t (*pfInvokeResolveDialog)(char* list, uint64_t* size);
  /// Shows the fonts in `list` to the user.
  uint32_t (*pfInvokeRestrictedFontsDialog)(const char* path, char* list);
  /// Writes whether the plug-in is enabled, or leaves `enabled` as it is.
  uint32_t (*pfPluginIsEnabled)(bool showMessage, bool* enabled);
  void (*pfProcessPanelMessages)();
  void (*pfRegisterPlugPlug)();
  /// Gives the document of that `id` its path.
  uint32_t (*pfSetPathForDocument)(const char* path, const char* id);
  /// Ends the connection. The last call.
  uint32_t (*pfTerminateTamberlinkInterface)();
  void (*pfUpdateDocumentFontUsage)();
  void (*pfSetRebuildWorkgroupsMenuCallback)();
  /// Tells the user that nobody is logged in.
  uint32_t (*pfShowNotLoggedInMessageBox)();
  /// Writes whether to tell the user so.
  uint32_t (*pfShouldShowLogin)(bool* show);

  /// The path that was loaded.
  std::string frameworkPath;
  /// The version that the framework declares, cut to 1023 bytes; empty if it declares none.
  std::string frameworkVersion;
  /// The number of exports that the framework lacks.
  int32_t missingFunctionCount = 0;

  virtual ~TBKLoader();
  TBKLoader(const TBKLoader&) = delete;
  TBKLoader& operator=(const TBKLoader&) = delete;

  /// Returns the instance, or null if the framework can't be opened. On macOS one that can't be
  /// loaded gives an instance without operations. Searches for the framework and loads it at the
  /// first call, and again at each call after a failure.
  static TBKLoader* GetSharedInstance() {
    return sSharedInstance ? sSharedInstance : FindAndLoadSharedInstance();
  }

  /// Opens the framework at that path unless there is an instance. Returns the instance, or null.
  static TBKLoader* GetThisSharedInstance(const std::string& frameworkPath);

  /// Fills the table from `bundle`, a handle of `LoadDllOrFramework`, and counts the exports that
  /// it lacks. Clears the table for null.
  static void ResetFunctionPointers(TBKLoader* loader, const void* bundle);

  /// Tests whether all members but the last two are non-null, or null if `nonNull` is false. Traces
  /// each that isn't.
  bool VerifyThatAllMembersAre(bool nonNull);

 private:
  TBKLoader();
  static TBKLoader* FindAndLoadSharedInstance();

  static TBKLoader* sSharedInstance;
};

/// Calls the framework's operation, as in `CallTamberlink(&TBKLoader::pfShouldShowLogin, &show)`.
/// Without the framework or the operation, returns `CoreErrorCodes::kNotImplemented` and leaves
/// every out-parameter as it was.
template <class... Parameters>
uint32_t CallTamberlink(uint32_t (*TBKLoader::*member)(Parameters...),
                        std::type_identity_t<Parameters>... arguments) {
  const TBKLoader* loader = TBKLoader::GetSharedInstance();
  if (!loader || !(loader->*member)) return CoreErrorCodes::kNotImplemented;
  return (loader->*member)(arguments...);
}

/// Asks the framework whether the plug-in is enabled. Writes false if it lacks the operation, as
/// one that can't be loaded does: nothing would take the place of the host's own dialog.
void AskWhetherPluginIsEnabled(bool showMessage, bool* enabled);
