#pragma once

#include <sys/types.h>

#include <set>

namespace host {

/// Ends what sessions leave behind. From its construction on, processes whose parent ends become
/// children of this process, or of one between that has made itself a subreaper.
class Janitor {
 public:
  Janitor();
  Janitor(const Janitor&) = delete;
  Janitor& operator=(const Janitor&) = delete;

  /// Takes note of a child process, which leads a process group and is a subreaper.
  void watch(pid_t child) { mChildren.insert(child); }
  /// Kills what a watched child process has left behind when it ended, in its group and outside.
  void cleanUpAfter(pid_t child);

 private:
  std::set<pid_t> mChildren;  ///< those of this process that nobody has left behind
};

}  // namespace host
