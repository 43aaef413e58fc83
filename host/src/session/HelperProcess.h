#pragma once

#include <sys/types.h>

#include <filesystem>

namespace host {

/// A process that runs beside a session, in the session folder and with it as `HOME`. Ends with
/// this object, and with this process whatever ends it.
class HelperProcess {
 public:
  /// Returns when the process has written its first line. Throws `std::runtime_error` if it can't
  /// be started, or ends before that.
  HelperProcess(const std::filesystem::path& executable, const std::filesystem::path& folder);
  ~HelperProcess();
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;

 private:
  pid_t mProcess = -1;
  int mInput = -1;
};

}  // namespace host
