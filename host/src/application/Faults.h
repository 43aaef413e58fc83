#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "AE_GeneralPlug.h"

namespace host {

/// The name of a fault: a dialog throws an exception at a key event.
inline constexpr char kSendEvent[] = "sendEvent";

/// Returns the functions that a session can make fail: `kSendEvent`, and all that the host
/// supplies. The suites' tables add these before `main` begins.
std::set<std::string, std::less<>>& FunctionsThatCanFail();

/// A failure that a session asks for.
struct Fault {
  static constexpr int64_t kAlways = -1;

  std::string function;          ///< or a suite that is refused, with its version
  A_Err result = A_Err_GENERIC;  ///< that the calls return
  int64_t times = kAlways;       ///< how many calls are still to fail
  int64_t call = 0;              ///< the only one that fails, counted from 1 from now; 0 for each
  bool met = false;              ///< a call has met it, or it needs none
};

/// The failures that a session asks for.
class Faults {
 public:
  /// Replaces an earlier fault of the same function, if both or neither are of one call by its
  /// number.
  void add(Fault fault);
  /// While paused, every call succeeds. Those that a fault by number waits for are counted all the
  /// same.
  void pause(bool paused) { mPaused = paused; }

  /// Counts a call. Returns the error that it has to return, or 0.
  A_Err take(std::string_view function);
  /// Returns the functions that were called less often than they were to fail. `byNumber` leaves
  /// out all faults but those of one call by its number.
  std::vector<std::string> unmet(bool byNumber) const;

 private:
  std::vector<Fault> mFaults;
  bool mPaused = false;
};

}  // namespace host
