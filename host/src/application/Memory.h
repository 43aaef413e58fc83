#pragma once

#include <array>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <unordered_map>

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
  /// Returns whether the guard is as it was.
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

/// A memory handle, or a block of the basic suite.
struct Piece {
  GuardedBytes bytes;
  /// What a handle points to: the start of the bytes. Null for a block.
  std::unique_ptr<_Up_OpaqueMem*> slot;
  int locks = 0;
  int failedLocks = 0;  ///< that the session wanted: an unlock for one is no misuse
};

/// The memory that the plug-in holds: handles, each named by the address of its slot, and blocks,
/// named by their first byte. An address that was freed isn't given out again at once, so that a
/// second free doesn't hit something else.
class Memory {
 public:
  // Both return null if there is no memory.

  /// Makes a handle that holds `size` zero bytes.
  AEGP_MemHandle makeHandle(size_t size);
  void* makeBlock(size_t size);

  // There has to be such a handle or block.

  Piece& at(const void* thing) { return mPieces.at(thing); }
  /// Keeps the contents of a handle, and adds zero bytes. Returns false, and changes nothing, if
  /// there is no memory.
  bool resize(AEGP_MemHandle handle, size_t size);
  /// Frees a handle, locked or not, or a block. The bytes of a handle are really freed, so that a
  /// sanitizer sees a later use.
  void free(const void* thing);

  /// Returns what is held, by its name.
  const std::unordered_map<const void*, Piece>& pieces() const { return mPieces; }
  /// How many bytes freed blocks still take, which isn't the plug-in's fault.
  size_t bytesKept() const;

 private:
  std::unordered_map<const void*, Piece> mPieces;
  std::array<Piece, 256> mFreed;  ///< lately
  size_t mNextFreed = 0;
};

}  // namespace host
