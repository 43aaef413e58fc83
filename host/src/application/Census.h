#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "RunListener.h"

namespace host {

/// Counts the calls of each function that could fail. Does nothing until somebody listens.
class Census {
 public:
  void listen(std::function<void(const CountedCall&)> listener) { mListener = std::move(listener); }
  /// While it rests, it counts, and nobody hears of it.
  void rest(bool resting) { mResting = resting; }
  /// Notes that the host calls the plug-in.
  void enter() { ++mEntry; }
  int64_t entry() const { return mEntry; }
  void count(std::string_view function) {
    if (mListener) tell(function);
  }

 private:
  struct Calls {
    int64_t number = 0;
    int64_t entry = 0;    ///< of the latest
    int64_t inEntry = 0;  ///< during that entry
  };

  void tell(std::string_view function);

  std::function<void(const CountedCall&)> mListener;
  bool mResting = false;
  int64_t mEntry = 0;
  std::map<std::string, Calls, std::less<>> mCalls;
};

}  // namespace host
