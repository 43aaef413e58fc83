#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

#include "RunListener.h"

namespace host {

/// Says what a plug-in uses of the host, from the calls that the sessions show.
class Summary final : public RunListener {
 public:
  void take(const Event& event) override;
  void end(const SessionInfo& /*session*/, const Played& /*played*/) override {}
  /// Prints it to standard output.
  void print() const;

 private:
  std::set<std::string> mHooks;
  std::set<std::string> mMenuItems;
  std::set<std::string> mSuites;
  std::set<std::string> mMissingSuites;
  std::map<std::string, int64_t> mFunctions;  ///< how often each was called
  std::set<std::string> mNotSupplied;
};

}  // namespace host
