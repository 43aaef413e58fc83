#include "desktop/Log.h"

#include <cstdio>
#include <utility>

namespace desktop {
namespace {

std::function<void(const std::string&)>& LogSink() {
  static auto& sink = *new std::function<void(const std::string&)>;
  return sink;
}

}  // namespace

void Log(const std::string& line) {
  if (LogSink()) {
    LogSink()(line);
  } else {
    std::fprintf(stderr, "%s\n", line.c_str());
  }
}

void SetLogSink(std::function<void(const std::string& line)> sink) {
  LogSink() = std::move(sink);
}

}  // namespace desktop
