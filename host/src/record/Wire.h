#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "Event.h"
#include "FlightRecord.h"

// How the process that plays a session tells events to the one that waits for it: through a pipe,
// as JSON objects, one a line. Static destructors tell of what happens after the exit code is
// fixed, and what was told survives a crash that comes later.

namespace host {

/// Writes events to a pipe, which it doesn't own. Drops them until `attach` names the pipe, and in
/// a process that the plug-in has forked.
class Wire {
 public:
  /// Time that the other process needs doesn't count for the time limit of `flight`.
  void attach(int pipe, FlightRecord& flight);
  /// For any thread.
  void send(const Event& event) const;

 private:
  int mPipe = -1;
  FlightRecord* mFlight = nullptr;
  mutable std::mutex mMutex;
};

/// Takes the events out of the bytes that were read so far, and leaves there what isn't whole.
std::vector<Event> TakeEvents(std::string& bytes);

}  // namespace host
