#pragma once

#include <cstdint>
#include <string_view>

#include "AE_GeneralPlug.h"
#include "Faults.h"
#include "Findings.h"
#include "Suites.h"

namespace host {

/// A call of a host function by the plug-in. Every function of the host begins with one: it writes
/// the call into the flight record, and checks the thread and that the suite is acquired. The
/// function then checks its arguments with it, and asks for `error` before it does its work.
class HostCall {
 public:
  /// `arguments` are for the flight record: integers, texts and pointers.
  template <typename... Arguments>
  HostCall(SuiteId suite, FailingFunction function, Arguments... arguments) : mFunction(function) {
    begin();
    (write(arguments), ...);
    finish(suite);
  }

  /// Each check returns whether the argument is right. A wrong one is a finding, and `error` is
  /// then set. `name` is the argument's name.
  bool needs(const void* argument, const char* name);
  bool needsPluginId(AEGP_PluginID id);
  bool needsProject(AEGP_ProjectH project);
  bool needsMemory(AEGP_MemHandle handle);
  bool needsPreferences(AEGP_PersistentBlobH blob);
  bool needsMenuItem(AEGP_Command command);
  /// For a function that calls hooks: returns whether it may.
  bool needsDepthForHooks();
  /// Reports a misuse of another kind.
  void misused(Finding finding, std::string_view what);

  /// Returns the error of a misuse, or else the one that the session wants from this call, or 0.
  A_Err error();
  /// Returns the error of a misuse, or 0.
  A_Err misuse() const { return mError; }
  /// Returns the error that the session wants from this call, or 0, and adds it to the timeline.
  A_Err fault();

 private:
  void begin();
  void write(int64_t number);
  void write(double number);
  void write(const char* text);
  void write(const void* pointer);
  void finish(SuiteId suite);
  void append(std::string_view text);

  FailingFunction mFunction;
  A_Err mError = A_Err_NONE;
  bool mOnMainThread = true;
  size_t mWritten = 0;
};

}  // namespace host
