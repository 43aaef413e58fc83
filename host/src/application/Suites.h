#pragma once

#include <array>
#include <string>
#include <vector>

#include "AE_GeneralPlug.h"
#include "SPBasic.h"

namespace host {

/// The table that a plug-in's entry point gets. Its suites act on `TheHost()`.
SPBasicSuite* BasicSuite();

/// Whether this host has such a suite.
bool HasSuite(const std::string& name, int32 version);

/// Counts what plug-ins acquire and give back.
class SuiteLedger {
 public:
  /// 0 and the suite's table, or an error and null for a suite that this host doesn't have.
  SPErr acquire(const char* name, int32 version, const void** suite);
  SPErr release(const char* name, int32 version);

  int64_t acquisitions() const { return mAcquisitions; }
  /// What went wrong so far, and what hasn't come back.
  std::vector<std::string> findings() const;

 private:
  static constexpr size_t kSuiteCount = 9;

  std::array<int64_t, kSuiteCount> mOutstanding{};
  int64_t mAcquisitions = 0;
  std::vector<std::string> mViolations;
};

}  // namespace host
