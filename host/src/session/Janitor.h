#pragma once

#include <sys/types.h>

#include <filesystem>
#include <set>
#include <string>

namespace host {

/// Removes folders and kills process groups when this process dies, however that happens. Does so
/// in a process of its own. While this process lives, it ends what sessions leave behind.
class Janitor {
 public:
  /// Starts the process. Throws `std::runtime_error` if it can't. From now on, processes whose
  /// parent ends become children of this process, or of one between that has made itself a
  /// subreaper.
  Janitor();
  /// Ends the process, which removes what is still watched.
  ~Janitor();
  Janitor(const Janitor&) = delete;
  Janitor& operator=(const Janitor&) = delete;

  void watch(const std::filesystem::path& folder) const { tell('+', folder.string()); }
  void forget(const std::filesystem::path& folder) const { tell('-', folder.string()); }
  /// Does the same for the process group of a child process, which it kills. The child has to be a
  /// subreaper.
  void watchGroup(pid_t group);
  /// Kills what a watched child process has left behind when it ended, in its group and outside,
  /// and forgets the group.
  void endGroup(pid_t group);
  /// To be called in each child process, which would keep the janitor from noticing the death.
  void leave() const;

 private:
  void tell(char what, const std::string& text) const;

  pid_t mProcess = -1;
  int mPipe = -1;
  std::set<pid_t> mChildren;  ///< those of this process that nobody has left behind
};

}  // namespace host
