#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "TBKLoader.h"

/// The framework's operations as a unit test sees them, in the place of those of the loaded module:
/// every call is written down, and what a call leaves is set beforehand. One for the process,
/// because the table holds plain functions.
struct FakeTamberlink {
  struct OpenAnswer {
    uint32_t result = 0;
    std::string text = {};
    int32_t count = 0;
    uint64_t size = 0x20000;
  };

  std::vector<std::string> calls;
  bool enabled = true;
  bool writesEnabled = true;
  bool showLogin = false;
  bool startRequested = false;
  /// Answers of `HandleOpenExistingDocument` in order; the last one stays.
  std::deque<OpenAnswer> open = {OpenAnswer()};
  /// What `InvokeResolveDialog` leaves as the user's choice.
  std::string chosen;

  /// Loads the framework and puts the recording operations into the table. Returns the instance.
  TBKLoader* Install();
  std::vector<std::string> TakeCalls();
};

extern FakeTamberlink fake_tamberlink;
