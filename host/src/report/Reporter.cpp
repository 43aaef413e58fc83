#include "Reporter.h"

#include <unistd.h>

#include <cstdint>
#include <cstring>

namespace host {

void Reporter::send(ReportKind kind, std::string_view text) const {
  if (!attached()) return;
  const uint64_t size = text.size();
  std::string bytes(1, static_cast<char>(kind));
  bytes.append(reinterpret_cast<const char*>(&size), sizeof size).append(text);
  for (size_t sent = 0; sent < bytes.size();) {
    const ssize_t written = write(mPipe, bytes.data() + sent, bytes.size() - sent);
    if (written <= 0) return;
    sent += static_cast<size_t>(written);
  }
}

bool ReadReport(std::FILE* pipe, Report& report) {
  uint64_t size = 0;
  const int kind = std::fgetc(pipe);
  if (kind == EOF || std::fread(&size, sizeof size, 1, pipe) != 1) return false;
  report.kind = static_cast<ReportKind>(kind);
  report.text.resize(size);
  return std::fread(report.text.data(), 1, size, pipe) == size;
}

}  // namespace host
