#pragma once

#include <string>
#include <vector>

#include "DebugUtils.h"

/// Records traces while it lives.
class TraceLog {
 public:
  TraceLog() {
    SetTraceSink([this](std::string_view text) { lines.emplace_back(text); });
  }
  ~TraceLog() { SetTraceSink({}); }
  TraceLog(const TraceLog&) = delete;
  TraceLog& operator=(const TraceLog&) = delete;

  std::vector<std::string> lines;
};
