#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "AE_GeneralPlug.h"

namespace host {

/// The host's memory handles. A freed handle's memory is really freed, so that a sanitizer sees a
/// later use. Misuse returns an error to the caller and is a failure of the session.
class MemoryHandles {
 public:
  /// Makes a handle that holds `text` and a terminating 0.
  AEGP_MemHandle make(const std::u16string& text);
  A_Err free(AEGP_MemHandle handle);
  A_Err lock(AEGP_MemHandle handle, void** start);
  A_Err unlock(AEGP_MemHandle handle);
  /// Notes a lock that the session made fail: an unlock for it is no misuse.
  void noteFailedLock(AEGP_MemHandle handle);

  /// Returns each misuse so far, and each leak.
  std::vector<std::string> findings() const;

 private:
  struct Block {
    _Up_OpaqueMem* start = nullptr;
    std::u16string text;
    int locks = 0;
    int failedLocks = 0;
  };
  Block* find(AEGP_MemHandle handle, const char* function);

  std::unordered_map<AEGP_MemHandle, std::unique_ptr<Block>> mBlocks;
  std::vector<std::string> mViolations;
};

}  // namespace host
