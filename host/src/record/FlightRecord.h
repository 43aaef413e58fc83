#pragma once

#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "Event.h"

namespace host {

/// Nanoseconds of a clock that sessions don't stop.
inline int64_t MonotonicNow() {
  return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// What the process that plays a session is doing. Lies in memory that it shares with the process
/// that waits for it, so that it can be read after a crash. Texts are NUL-terminated and cut to
/// their arrays.
struct FlightRecord {
  /// When the call of the plug-in that is under way, or else the host's own work, began, by
  /// `MonotonicNow`; 0 while no time limit runs.
  std::atomic<int64_t> watchdogStart{0};
  /// "idle hook", "static constructor"; empty in the host itself. Static text of this program,
  /// which lies at the same place in both processes.
  std::atomic<const char*> hook{""};
  std::array<char, 512> hostCall{};    ///< the latest host call, with its arguments
  bool inHostCall = false;             ///< it is under way, and no hook within it
  std::array<char, 512> step{};        ///< the step's place in the session file
  std::atomic<int64_t> stepNumber{0};  ///< counts from 1; 0 before the first step
  bool isOfFork = false;               ///< nobody reads it; see `KeepFromForks`
  bool isFinished = false;             ///< the host has done all it has to
  std::atomic<int64_t> tick{0};
  std::atomic<int64_t> time{0};        ///< virtual, in seconds since 1970
  std::array<off_t, 2> outputTaken{};  ///< bytes of the plug-in's outputs that are on the timeline

  /// Says in what the main thread is: "the idle hook", "the host itself".
  std::string inWhat() const;
  /// Says for a finding where the session is: the tick, the host call and the step.
  std::string where() const;
};

/// Keeps the time limit from running while this process does what isn't the plug-in's, such as
/// waiting until the other process takes in what it reports. Can be nested. Does nothing in another
/// thread, since the time limit is the main thread's.
class WatchdogPause {
 public:
  explicit WatchdogPause(FlightRecord& record)
      : mRecord(record),
        mStart(gettid() == getpid() ? record.watchdogStart.exchange(0) : 0),
        mBegan(MonotonicNow()) {}
  ~WatchdogPause() {
    if (mStart != 0) mRecord.watchdogStart = mStart + MonotonicNow() - mBegan;
  }
  WatchdogPause(const WatchdogPause&) = delete;
  WatchdogPause& operator=(const WatchdogPause&) = delete;

 private:
  FlightRecord& mRecord;
  int64_t mStart;
  int64_t mBegan;
};

/// Makes a flight record that child processes share. Throws `std::runtime_error` if there is no
/// memory.
std::shared_ptr<FlightRecord> ShareFlightRecord();

/// Gives processes that this one forks from now on a record of their own, which nobody reads.
void KeepFromForks(FlightRecord& record);

/// Returns where the main thread is, for what the plug-in does: without the step's place and the
/// call, so for any thread.
EventHead HeadOf(const FlightRecord& record);

/// Copies `text` into one of the record's arrays, cut to its size.
template <size_t size>
void SetText(std::array<char, size>& field, std::string_view text) {
  field[text.copy(field.data(), size - 1)] = '\0';
}

}  // namespace host
