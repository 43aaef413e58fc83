#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "TBKLoader.h"

/// Replaces the loaded framework's operations: records each call and answers as set beforehand. One
/// for the process, because the table holds plain functions.
struct FakeTamberlink {
  struct OpenAnswer {
    uint32_t result = 0;
    std::string text = {};
    int32_t count = 0;
    uint64_t size = 0x20000;
  };

  std::vector<std::string> calls;
  /// What the framework writes. Without a value it writes nothing.
  std::optional<bool> enabled = true;
  std::optional<bool> showLogin;
  std::optional<bool> startRequested;
  /// Answers of `HandleOpenExistingDocument` in order; the last one stays.
  std::deque<OpenAnswer> open = {OpenAnswer()};
  /// The user's choice in `InvokeResolveDialog`.
  std::string chosen;
  /// The count of `ActivateChosenFonts`.
  int32_t chosenCount = 0;

  /// Loads the framework and fills its table with the recording operations. Returns the instance.
  TBKLoader* Install();
  std::vector<std::string> TakeCalls();
};

extern FakeTamberlink fake_tamberlink;
