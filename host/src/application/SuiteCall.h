#pragma once

#include <concepts>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "AE_GeneralPlug.h"
#include "Findings.h"
#include "Suites.h"
#include "Timeline.h"

namespace host {

/// A call of a host function by the plug-in, on the main thread, for as long as it lasts. Writes
/// the call into the flight record, has the timeline ascribe entries to it, and checks that the
/// suite is acquired.
class SuiteCall {
 public:
  template <typename... Arguments>
  SuiteCall(SuiteId suite, std::string_view function, Arguments... arguments)
      : mRunning{function, {toValue(arguments)...}, sizeof...(arguments)} {
    begin();
    checkSuite(suite);
  }
  ~SuiteCall();
  SuiteCall(const SuiteCall&) = delete;
  SuiteCall& operator=(const SuiteCall&) = delete;

  /// Returns the call that is under way and that no other is within.
  static SuiteCall& current();

  // Each check of an argument reports a wrong one, which then is the call's error. `name` is the
  // argument's name.

  /// For a function that doesn't give something back: the host is gone once the plug-in's static
  /// objects are being destroyed.
  void checkIsInTime();
  void needs(const void* argument, const char* name);
  void needsPluginId(AEGP_PluginID id);
  void needsProject(AEGP_ProjectH project, const char* name);
  void needsMemory(AEGP_MemHandle handle, const char* name);
  void needsPreferences(AEGP_PersistentBlobH blob, const char* name);
  void needsMenuItem(AEGP_Command command);
  void needsBlock(void* block, const char* name);
  /// Reports a misuse of another kind. `detail` is the name of the argument or the like. Returns
  /// the call's error: 0 if the finding is a warning.
  A_Err misused(Finding finding, std::string_view what, std::string detail = {});

  /// Returns the error of a misuse, or 0.
  A_Err error() const { return mError; }
  /// Counts the call, and returns the error that the session wants from it, or 0.
  A_Err fault();
  /// Notes what goes back to the plug-in.
  void answer(A_Err result, bool isSupplied = true);

 private:
  static RunningCall::Value toValue(std::integral auto number) {
    return static_cast<int64_t>(number);
  }
  static RunningCall::Value toValue(double number) { return number; }
  static RunningCall::Value toValue(const char* text) { return text; }
  /// What a buffer for a text holds isn't the plug-in's yet.
  static RunningCall::Value toValue(char* buffer) { return static_cast<const void*>(buffer); }
  template <typename Target>
  static RunningCall::Value toValue(Target* pointer) {
    if constexpr (std::is_function_v<Target>) {
      return reinterpret_cast<const void*>(pointer);
    } else {
      return static_cast<const void*>(pointer);
    }
  }

  void reportOverrun(const char* what);
  void begin();
  void checkSuite(SuiteId suite);
  void append(std::string_view text);
  void appendValue(const RunningCall::Value& value);

  RunningCall mRunning;
  const RunningCall* mOuter = nullptr;
  SuiteCall* mOuterCall = nullptr;
  A_Err mError = A_Err_NONE;
  size_t mWritten = 0;
};

}  // namespace host
