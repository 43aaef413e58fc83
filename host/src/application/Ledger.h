#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "AE_GeneralPlug.h"

namespace host {

/// Zero bytes for the plug-in, with a guard behind them that shows whether it has written past
/// their end. AddressSanitizer, if the process has it, reports that at once.
class GuardedBytes {
 public:
  GuardedBytes() = default;
  /// Holds nothing if there is no memory.
  explicit GuardedBytes(size_t size);

  char* start() const { return mStart.get(); }
  size_t size() const { return mSize; }
  /// Returns whether the guard, if there is one, is as it was.
  bool isIntact() const;
  /// Has a sanitizer report each use from now on.
  void poison() const;

 private:
  struct Free {
    void operator()(char* bytes) const { std::free(bytes); }
  };

  std::unique_ptr<char, Free> mStart;
  size_t mSize = 0;
};

/// The call by which the plug-in got something.
struct Origin {
  const char* function = "";  ///< static text
  const char* hook = "";      ///< static text
  int64_t tick = 0;

  /// As "AEGP_GetProjectPath in the idle hook at tick 3".
  std::string text() const;
};

/// What the host gives to the plug-in for some time. The plug-in names each thing by an address.
enum class Holding {
  memoryHandle,  ///< the address of its slot
  block,         ///< its first byte
  suite,         ///< its table
  project,       ///< the address of its slot
};

/// Something that the plug-in holds.
struct Held {
  Origin origin;
  GuardedBytes bytes{};  ///< of a memory handle or a block
  std::unique_ptr<_Up_OpaqueMem*>
      slot{};           ///< what a handle points to: the start of the bytes, if any
  int locks = 0;        ///< of a memory handle
  int failedLocks = 0;  ///< that the session wanted: an unlock for one is no misuse
};

/// Keeps account of what the plug-in holds, from which call, and of the last 256 things of each
/// kind that it has given back. No address of these is given out again, except a suite's, so that a
/// second use doesn't hit something else.
class Ledger {
 public:
  /// A suite can be given several times.
  void giveSuite(const void* table, const Origin& origin);
  AEGP_ProjectH giveProject();
  // Both give `size` zero bytes, and return null if there is no memory.
  AEGP_MemHandle giveMemory(size_t size, const Origin& origin);
  void* giveBlock(size_t size, const Origin& origin);

  /// Returns the thing if the plug-in holds it, or null.
  Held* find(Holding kind, const void* thing);
  /// Notes that the plug-in gives the thing back, as often as it got it. The latest origin goes
  /// first. Memory goes, locked or not. Returns false if the plug-in doesn't hold the thing.
  bool takeBack(Holding kind, const void* thing);
  /// Returns the origin of a thing that was given back lately, or null.
  const Origin* takenBack(Holding kind, const void* thing) const;

  /// Returns the things of the kind that the plug-in holds, in the order of their origins' texts.
  std::vector<std::pair<const void*, const Held*>> held(Holding kind) const;
  /// How many bytes the things given back lately still take, which isn't the plug-in's doing.
  size_t bytesKept() const;

 private:
  using Key = std::pair<Holding, const void*>;

  /// The things of a kind that were taken back, without the oldest.
  struct TakenBack {
    std::array<std::pair<const void*, Held>, 256> things{};
    size_t next = 0;
  };

  AEGP_MemHandle giveSlot(Holding kind, Held given);

  std::multimap<Key, Held> mHeld;
  std::array<TakenBack, 4> mTakenBack{};  ///< by kind
};

}  // namespace host
