#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "EventJson.h"
#include "OutputFile.h"
#include "RunListener.h"

namespace host {

/// Writes the sessions in the trace event format: each as a process, with a track for each actor.
/// Throws `std::runtime_error` if a write fails.
class TraceFile final : public RunListener {
 public:
  explicit TraceFile(const std::string& path);
  void begin(const SessionInfo& session) override;
  void take(const Event& event) override;
  void end(const SessionInfo& session, const Played& played) override;
  void finish() override;

 private:
  Json record(std::string_view phase, std::string_view name) const;
  Json record(std::string_view phase, std::string_view name, Actor actor) const;
  void writeCounter(const Event& state);
  void write(const Json& record);

  OutputFile mFile;
  bool mWritten = false;  ///< a record
  int64_t mSession = 0;   ///< counts from 1
  int64_t mTick = 0;
  int64_t mTime = 0;  ///< in microseconds
};

}  // namespace host
