#include "Wire.h"

#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "EventJson.h"

namespace host {

void Wire::attach(int pipe, FlightRecord& flight) {
  mPipe = pipe;
  mFlight = &flight;
}

void Wire::send(const Event& event) const {
  if (mPipe < 0 || mFlight->isOfFork) return;
  const std::string bytes = Dump(ToJson(event)) + "\n";
  const WatchdogPause pause(*mFlight);
  const std::lock_guard lock(mMutex);
  for (size_t sent = 0; sent < bytes.size();) {
    const ssize_t written = write(mPipe, bytes.data() + sent, bytes.size() - sent);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    sent += static_cast<size_t>(written);
  }
}

std::vector<Event> TakeEvents(std::string& bytes) {
  std::vector<Event> events;
  size_t begin = 0;
  for (size_t end = 0; (end = bytes.find('\n', begin)) != std::string::npos; begin = end + 1) {
    events.push_back(EventFrom(Json::parse(std::string_view(bytes).substr(begin, end - begin))));
  }
  bytes.erase(0, begin);
  return events;
}

}  // namespace host
