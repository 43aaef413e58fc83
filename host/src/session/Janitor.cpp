#include "Janitor.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <set>
#include <stdexcept>
#include <string>

namespace host {
namespace {

// Notes what there is to clean up until the process that writes to the pipe dies, then does it.
[[noreturn]] void CleanUpAfter(int pipe) {
  setpgid(0, 0);
  std::set<std::string> folders;
  std::set<std::string> groups;
  std::FILE* const stream = fdopen(pipe, "r");
  std::string line;
  for (int letter = 0; (letter = std::fgetc(stream)) != EOF;) {
    if (letter != '\0') {
      line += static_cast<char>(letter);
      continue;
    }
    if (line.front() == '+') folders.insert(line.substr(1));
    if (line.front() == '-') folders.erase(line.substr(1));
    if (line.front() == 'g') groups.insert(line.substr(1));
    if (line.front() == 'e') groups.erase(line.substr(1));
    line.clear();
  }
  for (const std::string& group : groups) kill(-std::stoi(group), SIGKILL);
  for (const std::string& folder : folders) {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }
  _exit(0);
}

}  // namespace

Janitor::Janitor() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("can't make a pipe");
  std::fflush(nullptr);
  mProcess = fork();
  if (mProcess < 0) throw std::runtime_error("can't make a process");
  if (mProcess == 0) {
    close(ends[1]);
    CleanUpAfter(ends[0]);
  }
  close(ends[0]);
  mPipe = ends[1];
}

Janitor::~Janitor() {
  close(mPipe);
  waitpid(mProcess, nullptr, 0);
}

void Janitor::leave() const {
  close(mPipe);
}

void Janitor::tell(char what, const std::string& text) const {
  const std::string line = what + text;
  // With its NUL. The janitor is a second line of defence, so that a failure changes nothing now.
  if (write(mPipe, line.c_str(), line.size() + 1) < 0) return;
}

}  // namespace host
