#include "Janitor.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Removal.h"

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
  for (const std::string& folder : folders) RemoveWholly(folder);
  _exit(0);
}

// Lists the child processes of this one, also those that have ended. None where the kernel doesn't
// tell.
std::vector<pid_t> Children() {
  std::ifstream list("/proc/thread-self/children");
  return {std::istream_iterator<pid_t>(list), {}};
}

}  // namespace

Janitor::Janitor() {
  // This program may have taken the place of a shell that had some.
  for (const pid_t child : Children()) mChildren.insert(child);
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("can't make a pipe");
  std::fflush(nullptr);
  mProcess = fork();
  if (mProcess < 0) throw std::runtime_error("can't make a process");
  if (mProcess == 0) {
    close(ends[1]);
    CleanUpAfter(ends[0]);
  }
  mChildren.insert(mProcess);
  close(ends[0]);
  mPipe = ends[1];
}

Janitor::~Janitor() {
  close(mPipe);
  waitpid(mProcess, nullptr, 0);
}

void Janitor::watchGroup(pid_t group) {
  mChildren.insert(group);
  tell('g', std::to_string(group));
}

void Janitor::endGroup(pid_t group) {
  kill(-group, SIGKILL);
  mChildren.erase(group);
  tell('e', std::to_string(group));
  const auto wasLeftBehind = [&](pid_t child) {
    // The processes that run beside a session are in this one's group.
    return !mChildren.contains(child) && getpgid(child) != getpgrp();
  };
  // Each that ends leaves its own children to this process.
  for (bool goesOn = true; std::exchange(goesOn, false);) {
    for (const pid_t child : Children()) {
      if (!wasLeftBehind(child)) continue;
      kill(child, SIGKILL);
      waitpid(child, nullptr, 0);
      goesOn = true;
    }
  }
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
