#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "AE_GeneralPlug.h"

namespace host {

/// The name of a fault: a dialog throws an exception at a key event.
inline constexpr char kSendEvent[] = "sendEvent";

/// Returns the functions that a session can make fail: all that the host supplies, and
/// `kSendEvent`.
const std::set<std::string, std::less<>>& FunctionsThatCanFail();
/// Adds one of them. For the suites' tables. `name` is static text. Returns true.
bool AddFunctionThatCanFail(const char* name);

/// The failures that a session asks for.
class Faults {
 public:
  /// Makes all further calls fail.
  static constexpr int64_t kAlways = 0;

  /// Makes the next `times` calls of `function` return `result`. Replaces an earlier request.
  void fail(const std::string& function, A_Err result, int64_t times);
  /// Makes the `call`-th call of `function` from now return `result`, and no other. `call` counts
  /// from 1. Replaces an earlier request of this kind, not one of the other kind.
  void failCall(const std::string& function, A_Err result, int64_t call);
  /// Returns whether a call by its number is still to fail.
  bool waitsForCall() const { return !mFailingCalls.empty(); }
  /// While they rest, every call succeeds. Calls are counted all the same.
  void rest(bool resting) { mResting = resting; }
  /// Makes the host refuse the suite.
  void refuse(const std::string& suite, int32 version) { mRefused.emplace(suite, version); }

  /// Counts a call. Returns the error that it has to return, or 0.
  A_Err take(std::string_view function);
  /// Returns whether the host has to refuse the suite.
  bool refuses(std::string_view suite, int32 version) const;
  /// Returns the functions that were called less often than they were to fail.
  std::vector<std::string> unmet() const;

 private:
  struct Failure {
    A_Err result = A_Err_NONE;
    int64_t times = 0;
    bool met = false;  ///< by at least one call
  };
  struct FailingCall {
    A_Err result = A_Err_NONE;
    int64_t callsLeft = 0;  ///< until and with the one that fails
  };

  A_Err takeAlways(std::string_view function);
  A_Err takeCall(std::string_view function);

  std::map<std::string, Failure, std::less<>> mFailures;
  std::map<std::string, FailingCall, std::less<>> mFailingCalls;
  bool mResting = false;
  std::set<std::pair<std::string, int32>> mRefused;
};

}  // namespace host
