#include "Suites.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <numeric>

#include "Host.h"
#include "HostCall.h"
#include "SuiteTables.h"

namespace host {
namespace {

struct Suite {
  std::string_view name;
  int32 version;
  const void* table;
};

// In the order of `SuiteId`.
const std::array kSuites{
    Suite{"AEGP Register Suite", 6, &kRegisterSuite5},
    Suite{"AEGP Command Suite", 1, &kCommandSuite1},
    Suite{"AEGP Utility Suite", 7, &kUtilitySuite3},
    Suite{"AEGP Utility Suite", 13, &kUtilitySuite6},
    Suite{"AEGP Proj Suite", 9, &kProjSuite6},
    Suite{"AEGP Memory Suite", 1, &kMemorySuite1},
    Suite{"PF AE Adv App Suite", 2, &kAdvAppSuite2},
    Suite{"AEGP Persistent Data Suite", 3, &kPersistentDataSuite3},
    Suite{"AEGP Persistent Data Suite", 4, &kPersistentDataSuite4},
};

// Returns `kSuites.size()` if there is none.
size_t IndexOf(std::string_view name, int32 version) {
  const auto* const found = std::find_if(kSuites.begin(), kSuites.end(), [&](const Suite& suite) {
    return suite.version == version && suite.name == name;
  });
  return static_cast<size_t>(found - kSuites.begin());
}

std::string NameOf(std::string_view suite, int32 version) {
  return fmt::format("{} {}", suite, version);
}

SPErr AcquireSuite(const char* name, int32 version, const void** suite) {
  HostCall call(SuiteId::basic, "AcquireSuite", name, int64_t{version});
  call.needs(name, "name");
  call.needs(suite, "suite");
  // Also where the session lets the call fail.
  if (call.misuse() == A_Err_NONE) *suite = nullptr;
  if (const A_Err error = call.error()) {
    if (call.misuse() == A_Err_NONE) TheHost().noteFailure(NameOf(name, version));
    // What the code that the host's makers give away throws for any suite that it lacks.
    TheHost().noteAnswer(PF_Err_BAD_CALLBACK_PARAM);
    return error;
  }
  if (TheHost().faults.refuses(name, version)) {
    TheHost().noteFailure("AcquireSuite");
    TheHost().noteFailure(NameOf(name, version));
    TheHost().noteOnce("refuses " + NameOf(name, version));
  } else {
    *suite = TheHost().suites.acquire(name, version, TheHost().origin("AcquireSuite"));
    if (!*suite)
      TheHost().noteOnce(fmt::format("{} {} is not supplied by this host", name, version));
  }
  if (*suite) return A_Err_NONE;
  TheHost().noteAnswer(PF_Err_BAD_CALLBACK_PARAM);
  return PF_Err_BAD_CALLBACK_PARAM;
}

SPErr ReleaseSuite(const char* name, int32 version) {
  HostCall call(SuiteId::basic, "ReleaseSuite", name, int64_t{version});
  if (!call.needs(name, "name") || call.misuse() != A_Err_NONE) return call.misuse();
  if (!TheHost().suites.release(name, version)) {
    const Origin* const released = TheHost().suites.released(name, version);
    call.misused(Finding::suiteReleasedTooOften,
                 fmt::format("{} {} isn't acquired{}", name, version,
                             released ? fmt::format("; the one from {} was released before",
                                                    released->text())
                                      : ""));
  }
  return call.error();
}

SPBoolean IsEqual(const char* token1, const char* token2) {
  HostCall call(SuiteId::basic, "IsEqual", token1, token2);
  call.needs(token1, "token1");
  call.needs(token2, "token2");
  if (call.error() != A_Err_NONE) return 0;
  return std::strcmp(token1, token2) == 0 ? 1 : 0;
}

SPErr AllocateBlock(size_t size, void** block) {
  HostCall call(SuiteId::basic, "AllocateBlock", static_cast<int64_t>(size), block);
  call.needs(block, "block");
  if (const A_Err error = call.error()) return error;
  *block = TheHost().blocks.allocate(size, TheHost().origin("AllocateBlock"));
  return *block ? A_Err{A_Err_NONE} : A_Err{A_Err_GENERIC};
}

bool NeedsBlock(HostCall& call, void* block) {
  if (call.misuse() != A_Err_NONE || !call.needs(block, "block")) return false;
  if (TheHost().blocks.holds(block)) return true;
  const Origin* const freed = TheHost().blocks.freed(block);
  call.misused(
      Finding::unknownBlock,
      freed ? "the block was freed before; it is from " + freed->text() : "there is no such block");
  return false;
}

SPErr FreeBlock(void* block) {
  HostCall call(SuiteId::basic, "FreeBlock", block);
  if (NeedsBlock(call, block)) TheHost().blocks.free(block);
  return call.error();
}

SPErr ReallocateBlock(void* block, size_t newSize, void** newBlock) {
  HostCall call(SuiteId::basic, "ReallocateBlock", block, static_cast<int64_t>(newSize), newBlock);
  if (NeedsBlock(call, block)) call.needs(newBlock, "newBlock");
  if (const A_Err error = call.error()) return error;
  void* const moved = TheHost().blocks.reallocate(block, newSize);
  if (!moved) return A_Err_GENERIC;
  *newBlock = moved;
  return A_Err_NONE;
}

SPBasicSuite basicSuite{
    .AcquireSuite = AcquireSuite,
    .ReleaseSuite = ReleaseSuite,
    .IsEqual = IsEqual,
    .AllocateBlock = AllocateBlock,
    .FreeBlock = FreeBlock,
    .ReallocateBlock = ReallocateBlock,
    NOT_SUPPLIED(basic, Undefined),
};

constexpr size_t kMostFreedBlocks = 256;

// The sanitizer is the plug-in's, so its function is known at run time alone.
void Poison(void* block) {
  using Function = void (*)(const volatile void*, size_t);
  static const auto poison =
      reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, "__asan_poison_memory_region"));
  if (poison) poison(block, malloc_usable_size(block));
}

}  // namespace

A_Err NoteNotSupplied(SuiteId suite, const char* function) {
  Host& host = TheHost();
  if (!host.isMainThread()) {
    host.reportFromOtherThread(function);
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  Note(host.flight().hostCall, function);
  const RunningCall running{function};
  const RunningCall* const outer = std::exchange(host.timeline.call, &running);
  if (!host.suites.isAcquired(suite)) {
    host.reportMisuse(Finding::releasedSuite,
                      fmt::format("{}: its suite isn't acquired", function));
  }
  host.timeline.record.notSupplied.push_back(
      {function, host.where(), host.timeline.head(Actor::plugIn)});
  host.noteOnce(fmt::format("{} is not supplied by this host", function));
  host.timeline.call = outer;
  return PF_Err_BAD_CALLBACK_PARAM;
}

SPBasicSuite* BasicSuite() {
  return &basicSuite;
}

bool HasSuite(std::string_view name, int32 version) {
  return IndexOf(name, version) < kSuites.size();
}

bool HasSuite(std::string_view nameAndVersion) {
  return std::any_of(kSuites.begin(), kSuites.end(), [&](const Suite& suite) {
    return NameOf(suite.name, suite.version) == nameAndVersion;
  });
}

const void* SuiteLedger::acquire(std::string_view name, int32 version, const Origin& origin) {
  static_assert(kSuiteCount == kSuites.size());
  const size_t index = IndexOf(name, version);
  if (index == kSuiteCount) return nullptr;
  mHeld[index].push_back(origin);
  ++mAcquisitions;
  return kSuites[index].table;
}

bool SuiteLedger::release(std::string_view name, int32 version) {
  const size_t index = IndexOf(name, version);
  if (index == kSuiteCount || mHeld[index].empty()) return false;
  mReleased[index] = mHeld[index].back();
  mHeld[index].pop_back();
  return true;
}

const Origin* SuiteLedger::released(std::string_view name, int32 version) const {
  const size_t index = IndexOf(name, version);
  return index < kSuiteCount && mReleased[index] ? &*mReleased[index] : nullptr;
}

int64_t SuiteLedger::held() const {
  return std::accumulate(mHeld.begin(), mHeld.end(), int64_t{0},
                         [](int64_t sum, const std::vector<Origin>& origins) {
                           return sum + static_cast<int64_t>(origins.size());
                         });
}

std::vector<std::string> SuiteLedger::leaks() const {
  std::vector<std::string> leaks;
  for (size_t i = 0; i < kSuiteCount; ++i) {
    for (const Origin& origin : mHeld[i]) {
      leaks.push_back(fmt::format("{} {} is left, from {}", kSuites[i].name, kSuites[i].version,
                                  origin.text()));
    }
  }
  return leaks;
}

Blocks::~Blocks() {
  for (const auto& [block, origin] : mOrigins) std::free(block);
  for (const auto& [block, origin] : mFreed) std::free(block);
}

void* Blocks::allocate(size_t size, const Origin& origin) {
  void* const block = std::malloc(std::max<size_t>(size, 1));
  if (block) mOrigins.emplace(block, origin);
  return block;
}

const Origin* Blocks::freed(void* block) const {
  const auto found = std::find_if(mFreed.begin(), mFreed.end(),
                                  [&](const auto& freed) { return freed.first == block; });
  return found == mFreed.end() ? nullptr : &found->second;
}

void Blocks::free(void* block) {
  Poison(block);
  mFreed.emplace_back(block, mOrigins.at(block));
  mOrigins.erase(block);
  if (mFreed.size() <= kMostFreedBlocks) return;
  std::free(mFreed.front().first);
  mFreed.pop_front();
}

void* Blocks::reallocate(void* block, size_t size) {
  void* const moved = allocate(size, mOrigins.at(block));
  if (!moved) return nullptr;
  std::memcpy(moved, block, std::min(size, malloc_usable_size(block)));
  free(block);
  return moved;
}

std::vector<std::string> Blocks::leaks() const {
  std::vector<std::string> leaks;
  for (const auto& [block, origin] : mOrigins) {
    leaks.push_back(fmt::format("a block is left, from {}", origin.text()));
  }
  std::sort(leaks.begin(), leaks.end());
  return leaks;
}

}  // namespace host
