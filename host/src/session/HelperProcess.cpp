#include "HelperProcess.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

namespace host {
namespace {

std::array<int, 2> MakePipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("can't make a pipe");
  return ends;
}

[[noreturn]] void Become(const std::filesystem::path& executable,
                         const std::filesystem::path& folder, int input, int output) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  dup2(input, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  setenv("HOME", folder.c_str(), 1);
  if (chdir(folder.c_str()) == 0) {
    execl(executable.c_str(), executable.c_str(), static_cast<char*>(nullptr));
  }
  _exit(127);
}

bool ReadsLine(int output) {
  char letter = 0;
  while (read(output, &letter, 1) == 1) {
    if (letter == '\n') return true;
  }
  return false;
}

}  // namespace

HelperProcess::HelperProcess(const std::filesystem::path& executable,
                             const std::filesystem::path& folder) {
  const std::array<int, 2> input = MakePipe();
  const std::array<int, 2> output = MakePipe();
  mProcess = fork();
  if (mProcess < 0) throw std::runtime_error("can't make a process");
  if (mProcess == 0) Become(executable, folder, input[0], output[1]);
  mInput = input[1];
  close(input[0]);
  close(output[1]);
  const bool ready = ReadsLine(output[0]);
  close(output[0]);
  if (ready) return;
  close(mInput);
  waitpid(mProcess, nullptr, 0);
  throw std::runtime_error(fmt::format("{} ended before it was ready", executable.string()));
}

HelperProcess::~HelperProcess() {
  close(mInput);
  waitpid(mProcess, nullptr, 0);
}

}  // namespace host
