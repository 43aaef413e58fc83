#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "AE_GeneralPlug.h"

namespace host {

/// Stands for a dialog window that raises an exception at an event.
inline constexpr std::string_view kSendEvent = "sendEvent";

/// Whether a session can have that function fail.
bool CanFail(std::string_view function);

/// Failures that a session has asked for.
class Faults {
 public:
  /// The next `times` calls of `function` report `result`.
  void fail(const std::string& function, A_Err result, int64_t times);
  void refuse(const std::string& suite, int32 version) { mRefused.emplace(suite, version); }

  /// The result that this call has to report, 0 for none.
  A_Err take(std::string_view function);
  bool refuses(std::string_view suite, int32 version) const;

 private:
  struct Failure {
    A_Err result = A_Err_NONE;
    int64_t times = 0;
  };
  std::map<std::string, Failure, std::less<>> mFailures;
  std::set<std::pair<std::string, int32>> mRefused;
};

}  // namespace host
