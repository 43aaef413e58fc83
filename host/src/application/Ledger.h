#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace host {

/// What the host gives to the plug-in for some time.
enum class Holding { memoryHandle, block, suite, project };

/// The call by which the plug-in got something.
struct Origin {
  const char* function = "";  ///< static text
  const char* hook = "";      ///< static text
  int64_t tick = 0;

  /// As "AEGP_GetProjectPath in the idle hook at tick 3".
  std::string text() const;
};

/// Keeps account of what the plug-in holds, from which call, and of what it has given back lately.
/// Allocates no memory for the latter: that would count as the plug-in's.
class Ledger {
 public:
  /// Things of a kind are told apart by their address. A suite can be given several times.
  void give(Holding kind, const void* thing, const Origin& origin);
  bool holds(Holding kind, const void* thing) const { return mHeld.contains({kind, thing}); }
  /// Notes that the plug-in gives the thing back, as often as it got it. The latest origin goes
  /// first. Returns false if it doesn't hold it.
  bool takeBack(Holding kind, const void* thing);
  /// Returns the origin of a thing that was given back lately, or null.
  const Origin* takenBack(Holding kind, const void* thing) const;

  /// How many suites were given so far.
  int64_t suitesGiven() const { return mSuitesGiven; }
  /// Returns the things of the kind that the plug-in holds, in the order of their origins' texts.
  std::vector<std::pair<const void*, Origin>> held(Holding kind) const;

 private:
  /// The things of a kind that were taken back, without the oldest.
  struct TakenBack {
    std::array<std::pair<const void*, Origin>, 256> things{};
    size_t next = 0;
  };

  std::multimap<std::pair<Holding, const void*>, Origin> mHeld;
  std::array<TakenBack, 4> mTakenBack{};  ///< by kind
  int64_t mSuitesGiven = 0;
};

}  // namespace host
