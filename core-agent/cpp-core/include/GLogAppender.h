#pragma once

#include <string>

/// Receives finished log lines. Owned by the `GLogger` that it is registered with.
class GLogAppender {
 public:
  /// Must not log, because `RemoveAllAppenders` deletes appenders under the logger's lock.
  virtual ~GLogAppender() = default;

  /// Receives one finished line, which ends in a line feed. Called on the thread that logs, for one
  /// line at a time. Entries that it logs are dropped. What it throws goes to the code that logs.
  virtual void Append(const std::string& line) = 0;
};
