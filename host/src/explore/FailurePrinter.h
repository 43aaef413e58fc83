#pragma once

#include <yaml-cpp/yaml.h>

#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "RunListener.h"

namespace host {

/// A session that failed, which nobody wrote by hand.
struct Failure {
  std::string title;
  std::vector<Event> findings;
  YAML::Node session;  ///< repeats it
};

/// Prints failures as they come, with the sessions that repeat them.
class FailurePrinter {
 public:
  /// Writes each session to the folder `save` too, unless it is empty.
  explicit FailurePrinter(std::filesystem::path save) : mSave(std::move(save)) {}
  /// Throws `std::runtime_error` if the session can't be written.
  void print(const Failure& failure);
  size_t count() const { return mCount; }

 private:
  void write(const std::string& title, const std::string& text);

  std::filesystem::path mSave;
  std::set<std::string> mNames;
  size_t mCount = 0;
};

}  // namespace host
