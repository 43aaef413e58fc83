#pragma once

#include <sys/types.h>

#include <filesystem>

namespace host {

/// Removes the folders that it watches when this process dies, however that happens. Does so in a
/// process of its own.
class Janitor {
 public:
  /// Starts the process. Throws `std::runtime_error` if it can't.
  Janitor();
  /// Ends the process, which removes what is still watched.
  ~Janitor();
  Janitor(const Janitor&) = delete;
  Janitor& operator=(const Janitor&) = delete;

  void watch(const std::filesystem::path& folder) const { tell('+', folder); }
  void forget(const std::filesystem::path& folder) const { tell('-', folder); }
  /// To be called in each child process, which would keep the janitor from noticing the death.
  void leave() const;

 private:
  void tell(char what, const std::filesystem::path& folder) const;

  pid_t mProcess = -1;
  int mPipe = -1;
};

}  // namespace host
