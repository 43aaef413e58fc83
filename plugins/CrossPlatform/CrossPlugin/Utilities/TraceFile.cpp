#include "TraceFile.h"

#include <fcntl.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "DebugUtils.h"
#include "GDateTime.h"
#include "GLogger.h"

namespace {

constexpr char kVariable[] = "TYPELARK_TRACE";

// The sink and the appender share the file.
using File = std::shared_ptr<std::FILE>;

void Write(const File& file, const std::string& line) {
  std::fwrite(line.data(), 1, line.size(), file.get());
  std::fflush(file.get());
}

class TraceFileAppender final : public GLogAppender {
 public:
  explicit TraceFileAppender(File file) : mFile(std::move(file)) {}
  void Append(const std::string& line) override { Write(mFile, line); }

 private:
  File mFile;
};

File OpenTraceFile(const char* path) {
  if (path[0] != '/') {
    std::fprintf(stderr, "Typelark: %s isn't an absolute path: '%s'\n", kVariable, path);
    return nullptr;
  }
  // Only this user may read the projects' paths, and no child process gets the file.
  const int descriptor = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
  std::FILE* const file = descriptor < 0 ? nullptr : fdopen(descriptor, "a");
  if (!file) {
    std::fprintf(stderr, "Typelark: %s can't be opened: '%s': %s\n", kVariable, path,
                 std::strerror(errno));
    return nullptr;
  }
  return {file, std::fclose};
}

// Tells the runs in the file apart, and the halves of a universal binary.
void TraceProcess() {
  utsname system{};
  uname(&system);
  OutputIndentedAndFormattedString(0, "Trace of process %d on %s, begun at %s", getpid(),
                                   system.machine, GDateTime().GetAsISO8601String(true).c_str());
}

}  // namespace

void StartTraceFile() {
  const char* const path = std::getenv(kVariable);
  const File file = path ? OpenTraceFile(path) : nullptr;
  if (!file) return;
  SetTraceSink([file](std::string_view text) { Write(file, std::string(text) + "\n"); });
  GLogger::GetSharedInstance()->AddAppender(kVariable, std::make_unique<TraceFileAppender>(file));
  TraceProcess();
}
