#pragma once

#include <array>
#include <string>
#include <vector>

#include "AE_GeneralPlug.h"
#include "SPBasic.h"

namespace host {

/// Returns the table for a plug-in's entry point. Its suites act on `TheHost()`.
SPBasicSuite* BasicSuite();

/// Returns whether this host has the suite.
bool HasSuite(const std::string& name, int32 version);

/// Counts acquisitions and releases of suites.
class SuiteLedger {
 public:
  /// Writes the suite's table and returns 0. Writes null and returns an error if there is none.
  SPErr acquire(const char* name, int32 version, const void** suite);
  SPErr release(const char* name, int32 version);

  int64_t acquisitions() const { return mAcquisitions; }
  /// Returns each misuse so far, and each leak.
  std::vector<std::string> findings() const;

 private:
  static constexpr size_t kSuiteCount = 9;

  std::array<int64_t, kSuiteCount> mOutstanding{};
  int64_t mAcquisitions = 0;
  std::vector<std::string> mViolations;
};

}  // namespace host
