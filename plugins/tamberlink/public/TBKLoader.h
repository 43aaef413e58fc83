#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "CoreErrorCodes.h"
#include "DebugUtils.h"

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
/// The function pointer of each export in `TBKExports.def` has its name after `pf`. It is null if
/// the framework lacks the export. Exports that nobody calls have no signature.
class TBKLoader {
 public:
#define TBK_EXPORT(name, ...) uint32_t (*pf##name)(__VA_ARGS__);
#define TBK_UNCALLED_EXPORT(name) void (*pf##name)();
#include "TBKExports.def"

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

  /// Traces a call of the operation that `member` points to, with its arguments as the call left
  /// them. `PluginIsEnabled` and `ShouldShowLogin` are traced only if that differs from last time.
  void TraceCall(const void* member, const std::vector<std::string>& arguments,
                 uint32_t result) const;

 private:
  TBKLoader();
  static TBKLoader* FindAndLoadSharedInstance();

  static TBKLoader* sSharedInstance;
};

/// Returns what a trace shows of an argument: a text, a number, or nothing of a buffer, which may
/// lack a terminator.
inline std::string TraceText(const std::string& text) {
  return "'" + text + "'";
}
inline std::string TraceText(char* /*buffer*/) {
  return "...";
}
inline std::string TraceText(bool value) {
  return value ? "true" : "false";
}
inline std::string TraceText(const bool* value) {
  return TraceText(*value);
}
template <class Number>
std::string TraceText(const Number* value) {
  return std::to_string(*value);
}

/// What a caller passes for a parameter of the framework: the text itself for a text, which then
/// stays as it is during the call. Hooks that the host calls meanwhile may replace the caller's.
template <class Parameter>
using TamberlinkArgument =
    std::conditional_t<std::is_same_v<Parameter, const char*>, const std::string, Parameter>;

inline const char* ToTamberlink(const std::string& text) {
  return text.c_str();
}
template <class Value>
Value ToTamberlink(Value value) {
  return value;
}

/// Calls the framework's operation, as in `CallTamberlink(&TBKLoader::pfShouldShowLogin, &show)`.
/// Without the framework or the operation, returns `CoreErrorCodes::kNotImplemented` and leaves
/// every out-parameter as it was.
///
/// Few callers read the result: an event is reported once, and nothing could make up for a failure.
template <class... Parameters>
uint32_t CallTamberlink(uint32_t (*TBKLoader::*member)(Parameters...),
                        TamberlinkArgument<Parameters>... arguments) {
  const TBKLoader* loader = TBKLoader::GetSharedInstance();
  if (!loader) return CoreErrorCodes::kNotImplemented;
  const auto operation = loader->*member;
  const uint32_t result =
      operation ? operation(ToTamberlink(arguments)...) : CoreErrorCodes::kNotImplemented;
  if (TraceIsOn()) loader->TraceCall(&(loader->*member), {TraceText(arguments)...}, result);
  return result;
}

/// Asks the framework whether the plug-in is enabled. Writes false if the operation is missing, as
/// it is if loading failed. True would suppress the host's dialog with nothing to replace it.
void AskWhetherPluginIsEnabled(bool showMessage, bool* enabled);
