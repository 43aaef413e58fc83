#include "HelperProcess.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace host {
namespace {

std::array<int, 2> MakePipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("can't make a pipe");
  return ends;
}

[[noreturn]] void Become(const std::filesystem::path& executable, int input, int output) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  dup2(input, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  execl(executable.c_str(), executable.c_str(), static_cast<char*>(nullptr));
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

void StartHelperProcess(const std::filesystem::path& executable) {
  // This process keeps its end of the input for as long as it lives.
  const std::array<int, 2> input = MakePipe();
  const std::array<int, 2> output = MakePipe();
  const pid_t process = fork();
  if (process < 0) throw std::runtime_error("can't make a process");
  if (process == 0) Become(executable, input[0], output[1]);
  close(input[0]);
  close(output[1]);
  const bool ready = ReadsLine(output[0]);
  close(output[0]);
  if (ready) return;
  close(input[1]);
  waitpid(process, nullptr, 0);
  throw std::runtime_error(fmt::format("{} ended before it was ready", executable.string()));
}

}  // namespace host
