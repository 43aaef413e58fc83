#pragma once

#include <string>

/// Where finished log lines go. Owned by the `GLogger` that it is registered with.
class GLogAppender {
 public:
  /// Called with the logger's lock held: must not log.
  virtual ~GLogAppender() = default;

  /// Takes one finished line, its line feed included. Called on the thread that logs, for one line
  /// at a time; what it logs itself is dropped. Must not throw.
  virtual void Append(const std::string& line) = 0;
};
