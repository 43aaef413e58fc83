#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>

#include "AE_GeneralPlug.h"

namespace host {

/// Zero bytes for the plug-in, with a guard behind them that shows whether it has written past
/// their end. AddressSanitizer, if the process has it, reports that at once.
class GuardedBytes {
 public:
  /// Holds nothing if there is no memory.
  explicit GuardedBytes(size_t size);
  ~GuardedBytes();
  GuardedBytes(const GuardedBytes&) = delete;
  GuardedBytes& operator=(const GuardedBytes&) = delete;

  char* start() const { return mStart; }
  size_t size() const { return mSize; }
  bool isIntact() const;
  /// How much of the heap they take.
  size_t footprint() const;
  /// From now on a sanitizer reports a use.
  void poison() const;

 private:
  char* mStart;
  size_t mSize;
};

/// The memory handles and the blocks of the basic suite that the plug-in holds. Of what is freed,
/// the address isn't given away again at once: a second free would hit something else.
class Memory {
 public:
  /// Makes a handle that holds `size` zero bytes. Returns null if there is no memory.
  AEGP_MemHandle makeHandle(size_t size);
  /// Does the same for `text` and a terminating 0.
  AEGP_MemHandle makeHandle(const std::u16string& text);

  // The handle has to exist.

  /// Frees the handle, locked or not. Its bytes are really freed, so that a sanitizer sees a later
  /// use.
  void freeHandle(AEGP_MemHandle handle);
  void* lock(AEGP_MemHandle handle);
  /// Notes a lock that the session made fail: an unlock for it is no misuse.
  void noteFailedLock(AEGP_MemHandle handle);
  /// Returns false if the handle isn't locked.
  bool unlock(AEGP_MemHandle handle);
  bool isLocked(AEGP_MemHandle handle) const { return handleOf(handle).locks > 0; }
  bool isIntact(AEGP_MemHandle handle) const { return handleOf(handle).bytes->isIntact(); }
  size_t size(AEGP_MemHandle handle) const { return handleOf(handle).bytes->size(); }
  /// Keeps the contents, and adds zero bytes. Returns false, and changes nothing, if there is no
  /// memory.
  bool resize(AEGP_MemHandle handle, size_t size);

  size_t handleCount() const { return mHandles.size(); }
  size_t totalSize() const;

  /// Returns null if there is no memory.
  void* makeBlock(size_t size);

  // The block has to exist.

  bool isIntact(void* block) const { return mBlocks.at(block)->isIntact(); }
  void freeBlock(void* block);
  /// Frees the block, and returns another with its contents. Returns null, and leaves the block
  /// alone, if there is no memory.
  void* reallocate(void* block, size_t size);

  /// How many bytes freed blocks still take, which isn't the plug-in's fault.
  size_t bytesKept() const { return mBytesKept; }

 private:
  struct Handle {
    _Up_OpaqueMem* start = nullptr;  ///< the bytes, as the handle points to them
    std::unique_ptr<GuardedBytes> bytes;
    int locks = 0;
    int failedLocks = 0;

    bool hold(std::unique_ptr<GuardedBytes> held);
  };

  Handle& handleOf(AEGP_MemHandle handle) const { return *mHandles.at(handle); }

  std::unordered_map<AEGP_MemHandle, std::unique_ptr<Handle>> mHandles;
  std::deque<std::unique_ptr<Handle>> mFreedHandles;  ///< without their bytes, the latest last
  std::unordered_map<void*, std::unique_ptr<GuardedBytes>> mBlocks;
  std::deque<std::unique_ptr<GuardedBytes>> mFreedBlocks;
  size_t mBytesKept = 0;
};

}  // namespace host
