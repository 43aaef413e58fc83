#pragma once

#include <sys/types.h>

#include <filesystem>

namespace host {

/// A process that runs beside a session. Its working directory and `HOME` are the session folder.
/// Ends with this object, and when this process dies.
class HelperProcess {
 public:
  /// Starts the process and waits for its first line of output. Throws `std::runtime_error` if it
  /// can't be started or ends before that.
  HelperProcess(const std::filesystem::path& executable, const std::filesystem::path& folder);
  ~HelperProcess();
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;

 private:
  pid_t mProcess = -1;
  int mInput = -1;
};

}  // namespace host
