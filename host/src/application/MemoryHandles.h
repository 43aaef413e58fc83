#pragma once

#include <cstddef>
#include <cstdlib>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "AE_GeneralPlug.h"
#include "Origin.h"

namespace host {

/// The host's memory handles. A freed handle's memory is really freed, so that a sanitizer sees a
/// later use. Its address isn't given to another handle at once: a second free would hit that one.
class MemoryHandles {
 public:
  /// Makes a handle that holds `size` zero bytes. Returns null if there is no memory.
  AEGP_MemHandle make(size_t size, const Origin& origin);
  /// Does the same for `text` and a terminating 0.
  AEGP_MemHandle make(const std::u16string& text, const Origin& origin);
  bool holds(AEGP_MemHandle handle) const { return mBlocks.contains(handle); }
  /// Returns where the handle came from if it was freed lately, or else null.
  const Origin* freed(AEGP_MemHandle handle) const;

  // The handle has to exist.

  /// Frees the handle, locked or not.
  void free(AEGP_MemHandle handle);
  void* lock(AEGP_MemHandle handle);
  /// Notes a lock that the session made fail: an unlock for it is no misuse.
  void noteFailedLock(AEGP_MemHandle handle) { ++mBlocks.at(handle)->failedLocks; }
  /// Returns false if the handle isn't locked.
  bool unlock(AEGP_MemHandle handle);
  bool isLocked(AEGP_MemHandle handle) const { return mBlocks.at(handle)->locks > 0; }
  size_t size(AEGP_MemHandle handle) const { return mBlocks.at(handle)->size; }
  /// Keeps the contents, and adds zero bytes. Returns false, and changes nothing, if there is no
  /// memory.
  bool resize(AEGP_MemHandle handle, size_t size);

  size_t count() const { return mBlocks.size(); }
  size_t totalSize() const;
  /// Returns what each handle is that is left, and where it comes from.
  std::vector<std::pair<std::string, Origin>> leaks() const;

 private:
  struct Block {
    _Up_OpaqueMem* start = nullptr;  ///< the bytes, as the handle points to them
    std::unique_ptr<char, decltype(&std::free)> bytes{nullptr, std::free};
    size_t size = 0;
    int locks = 0;
    int failedLocks = 0;
    Origin origin;

    bool resize(size_t newSize);
  };

  std::unordered_map<AEGP_MemHandle, std::unique_ptr<Block>> mBlocks;
  std::deque<std::unique_ptr<Block>> mFreed;  ///< without their bytes, the latest last
};

}  // namespace host
