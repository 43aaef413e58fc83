#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace host {

/// Removes folders and kills process groups when this process dies, however that happens. Does so
/// in a process of its own.
class Janitor {
 public:
  /// Starts the process. Throws `std::runtime_error` if it can't.
  Janitor();
  /// Ends the process, which removes what is still watched.
  ~Janitor();
  Janitor(const Janitor&) = delete;
  Janitor& operator=(const Janitor&) = delete;

  void watch(const std::filesystem::path& folder) const { tell('+', folder.string()); }
  void forget(const std::filesystem::path& folder) const { tell('-', folder.string()); }
  /// Does the same for a process group, which it kills.
  void watchGroup(pid_t group) const { tell('g', std::to_string(group)); }
  void forgetGroup(pid_t group) const { tell('e', std::to_string(group)); }
  /// To be called in each child process, which would keep the janitor from noticing the death.
  void leave() const;

 private:
  void tell(char what, const std::string& text) const;

  pid_t mProcess = -1;
  int mPipe = -1;
};

}  // namespace host
