#include "GetPathToRunningProcess.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "CoreErrorCodes.h"
#include "TemporaryFolder.h"
#include "TraceLog.h"

namespace {

namespace fs = std::filesystem;

// Runs a copy of the font manager's process as long as the object lives. The copy ends with its
// standard input, so also when this process ends in any way.
class RunningCopy {
 public:
  explicit RunningCopy(const fs::path& executable, bool hasOwnSession = false) {
    fs::create_directories(executable.parent_path());
    fs::copy_file(fs::path(FONT_MANAGER) / "Oxbrim", executable);
    int input[2], output[2];
    if (pipe(input) != 0 || pipe(output) != 0) throw std::runtime_error("no pipe");
    mPid = fork();
    if (mPid == 0) {
      if (hasOwnSession) setsid();
      dup2(input[0], STDIN_FILENO);
      dup2(output[1], STDOUT_FILENO);
      close(input[1]);
      execl(executable.c_str(), executable.c_str(), nullptr);
      _exit(127);
    }
    close(input[0]);
    close(output[1]);
    mInput = input[1];
    // The copy writes when it runs.
    char byte = 0;
    if (read(output[0], &byte, 1) != 1) throw std::runtime_error("it doesn't run");
    close(output[0]);
  }
  ~RunningCopy() {
    close(mInput);
    waitpid(mPid, nullptr, 0);
  }
  RunningCopy(const RunningCopy&) = delete;
  RunningCopy& operator=(const RunningCopy&) = delete;

  pid_t pid() const { return mPid; }

 private:
  pid_t mPid = 0;
  int mInput = -1;
};

TEST(RunningProcess, IsFoundInItsSessionByItsExactNameAndTheLowestIdDecides) {
  TemporaryFolder folder;
  std::string found = "untouched";
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", found), CoreErrorCodes::kUnknownError);
  const RunningCopy other(folder.path() / "oxbrim");
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", found), CoreErrorCodes::kUnknownError);
  EXPECT_EQ(found, "untouched");

  const RunningCopy elsewhere(folder.path() / "Elsewhere/Oxbrim", true);
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", found), CoreErrorCodes::kUnknownError);

  const fs::path places[] = {folder.path() / "First Apps", folder.path() / "Second"};
  const RunningCopy first(places[0] / "Oxbrim");
  const RunningCopy second(places[1] / "Oxbrim");
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", found), CoreErrorCodes::kSuccess);
  const size_t lowest = first.pid() < second.pid() ? 0 : 1;
  EXPECT_EQ(found, places[lowest].string() + "/");

  TraceLog traces;
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", found), CoreErrorCodes::kSuccess);
  EXPECT_EQ(found, places[lowest].string() + "/");
  EXPECT_EQ(traces.lines,
            (std::vector<std::string>{"Running: '" + places[lowest].string() + "/Oxbrim'",
                                      "Running: '" + places[1 - lowest].string() + "/Oxbrim'"}));
}

}  // namespace
