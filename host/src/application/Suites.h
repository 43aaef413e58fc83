#pragma once

#include <array>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Origin.h"
#include "SPBasic.h"

namespace host {

/// The suites of this host.
enum class SuiteId {
  register5,
  command1,
  utility3,
  utility6,
  proj6,
  memory1,
  advApp2,
  persistentData3,
  persistentData4,
  basic,  ///< always there; the last one
};

/// Returns the table for a plug-in's entry point. Its suites act on `TheHost()`.
SPBasicSuite* BasicSuite();

/// Returns the suite's name, without its version.
std::string_view NameOf(SuiteId suite);
/// Returns whether this host has the suite.
bool HasSuite(std::string_view name, int32 version);
/// Does the same for a name such as "AEGP Memory Suite 1".
bool HasSuite(std::string_view nameAndVersion);

/// Keeps account of acquisitions and releases of suites.
class SuiteLedger {
 public:
  /// Notes an acquisition and returns the suite's table. Returns null if this host lacks the suite.
  const void* acquire(std::string_view name, int32 version, const Origin& origin);
  /// Returns false if the suite isn't acquired, or there is none.
  bool release(std::string_view name, int32 version);
  /// Returns the acquisition that was released last, or null.
  const Origin* released(std::string_view name, int32 version) const;
  bool isAcquired(SuiteId suite) const {
    return suite == SuiteId::basic || !mHeld[static_cast<size_t>(suite)].empty();
  }

  int64_t acquisitions() const { return mAcquisitions; }
  /// How many acquisitions aren't released.
  int64_t held() const;
  /// Returns the suite and the place of each acquisition that is left.
  std::vector<std::pair<std::string, Origin>> leaks() const;

 private:
  static constexpr auto kSuiteCount = static_cast<size_t>(SuiteId::basic);

  std::array<std::vector<Origin>, kSuiteCount> mHeld;
  std::array<std::optional<Origin>, kSuiteCount> mReleased;
  int64_t mAcquisitions = 0;
};

/// The blocks of memory that plug-ins get from the basic suite. A freed block's address isn't given
/// to another block at once: a second free would hit that one. AddressSanitizer, if the process has
/// it, reports a use of a freed block.
class Blocks {
 public:
  ~Blocks();
  Blocks() = default;
  Blocks(const Blocks&) = delete;
  Blocks& operator=(const Blocks&) = delete;

  /// Returns null if there is no memory.
  void* allocate(size_t size, const Origin& origin);
  bool holds(void* block) const { return mOrigins.contains(block); }
  size_t count() const { return mOrigins.size(); }
  /// Returns where the block came from if it was freed lately, or else null.
  const Origin* freed(void* block) const;
  /// The block has to exist.
  void free(void* block);
  /// The block has to exist. Frees it, and returns another with its contents. Returns null, and
  /// leaves the block alone, if there is no memory.
  void* reallocate(void* block, size_t size);
  /// Returns where each block that is left comes from.
  std::vector<Origin> leaks() const;

 private:
  std::unordered_map<void*, Origin> mOrigins;
  std::deque<std::pair<void*, Origin>> mFreed;  ///< the latest last
};

}  // namespace host
