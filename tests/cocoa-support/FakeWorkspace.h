#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

struct FakeApplication {
  int processIdentifier = 0;
  std::string bundleIdentifier;
  /// An application may have none.
  std::optional<std::string> executable;
};

/// Replaces the running applications that AppKit knows. One for the process.
struct FakeWorkspace {
  std::vector<FakeApplication> applications;
  /// The front application's process, or 0 for none.
  int front = 0;
  /// The activated processes with the options, in order.
  std::vector<std::pair<int, unsigned long>> activated;
};
extern FakeWorkspace fakeWorkspace;
