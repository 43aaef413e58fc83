#include "Reporter.h"

#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace host {

void Reporter::attach(int pipe, FlightRecord& flight) {
  mPipe = pipe;
  mFlight = &flight;
}

void Reporter::send(ReportKind kind, std::string_view text) const {
  if (mPipe < 0 || mFlight->isOfFork) return;
  const uint64_t size = text.size();
  std::string bytes(1, static_cast<char>(kind));
  bytes.append(reinterpret_cast<const char*>(&size), sizeof size).append(text);
  const WatchdogPause pause(*mFlight);
  for (size_t sent = 0; sent < bytes.size();) {
    const ssize_t written = write(mPipe, bytes.data() + sent, bytes.size() - sent);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    sent += static_cast<size_t>(written);
  }
}

bool ParseReport(std::string_view bytes, size_t& place, Report& report) {
  constexpr size_t kHead = 1 + sizeof(uint64_t);
  if (bytes.size() - place < kHead) return false;
  uint64_t size = 0;
  std::memcpy(&size, bytes.data() + place + 1, sizeof size);
  if (bytes.size() - place - kHead < size) return false;
  report.kind = static_cast<ReportKind>(bytes[place]);
  report.text = bytes.substr(place + kHead, size);
  place += kHead + size;
  return true;
}

}  // namespace host
