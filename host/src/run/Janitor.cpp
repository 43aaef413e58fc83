#include "Janitor.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>
#include <vector>

namespace host {
namespace {

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
}

void Janitor::cleanUpAfter(pid_t child) {
  kill(-child, SIGKILL);
  mChildren.erase(child);
  // Each that ends leaves its own children to this process.
  for (bool goesOn = true; std::exchange(goesOn, false);) {
    for (const pid_t left : Children()) {
      if (mChildren.contains(left)) continue;
      kill(left, SIGKILL);
      waitpid(left, nullptr, 0);
      goesOn = true;
    }
  }
}

}  // namespace host
