#include "Suites.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <numeric>

#include "SuiteFunction.h"

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
  if (TheHost().faults.refuses(name, version)) {
    TheHost().countFailure("AcquireSuite");
    TheHost().noteOnce("refuses " + NameOf(name, version));
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  *suite = TheHost().suites.acquire(name, version, TheHost().origin("AcquireSuite"));
  if (*suite) return A_Err_NONE;
  TheHost().noteOnce(NameOf(name, version) + " is not supplied by this host");
  return PF_Err_BAD_CALLBACK_PARAM;
}

void NoteNotAcquired(const char* name, int32 version, const void** suite) {
  if (!name || !suite) return;
  *suite = nullptr;
  if (HasSuite(name, version)) TheHost().countFailure(NameOf(name, version));
  // What the code that the host's makers give away throws for any suite that it lacks.
  TheHost().countAnswer(PF_Err_BAD_CALLBACK_PARAM);
}

SPErr ReleaseSuite(const char* name, int32 version) {
  if (TheHost().suites.release(name, version)) return A_Err_NONE;
  const Origin* const released = TheHost().suites.released(name, version);
  return SuiteCall::current().misused(
      Finding::suiteReleasedTooOften,
      fmt::format(
          "{} {} isn't acquired{}", name, version,
          released ? fmt::format("; the one from {} was released before", released->text()) : ""));
}

SPBoolean IsEqual(const char* token1, const char* token2) {
  return std::strcmp(token1, token2) == 0 ? 1 : 0;
}

SPErr AllocateBlock(size_t size, void** block) {
  *block = TheHost().blocks.allocate(size, TheHost().origin("AllocateBlock"));
  return *block ? A_Err{A_Err_NONE} : A_Err{A_Err_GENERIC};
}

SPErr FreeBlock(void* block) {
  TheHost().blocks.free(block);
  return A_Err_NONE;
}

SPErr ReallocateBlock(void* block, size_t newSize, void** newBlock) {
  void* const moved = TheHost().blocks.reallocate(block, newSize);
  if (!moved) return A_Err_GENERIC;
  *newBlock = moved;
  return A_Err_NONE;
}

using Acquire = Body<AcquireSuite, Order::faultFirst, NoteNotAcquired>;
using Release = Body<ReleaseSuite, Order::workFirst>;
using Freeing = Body<FreeBlock, Order::workFirst>;

SPBasicSuite basicSuite{
    SUPPLIED(basic, AcquireSuite, Acquire, "name", "version", "suite"),
    SUPPLIED(basic, ReleaseSuite, Release, "name", "version"),
    SUPPLIED(basic, IsEqual, Body<IsEqual>, "token1", "token2"),
    SUPPLIED(basic, AllocateBlock, Body<AllocateBlock>, "size", "block"),
    SUPPLIED(basic, FreeBlock, Freeing, "block"),
    SUPPLIED(basic, ReallocateBlock, Body<ReallocateBlock>, "block", "newSize", "newBlock"),
    NOT_SUPPLIED(basic, Undefined),
};

constexpr size_t kMostFreedBlocks = 256;

// The sanitizer is the plug-in's, so its function is known only at run time.
void Poison(void* block) {
  using Function = void (*)(const volatile void*, size_t);
  static const auto poison =
      reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, "__asan_poison_memory_region"));
  if (poison) poison(block, malloc_usable_size(block));
}

}  // namespace

SPBasicSuite* BasicSuite() {
  return &basicSuite;
}

bool HasSuite(std::string_view name, int32 version) {
  return IndexOf(name, version) < kSuites.size();
}

std::string_view NameOf(SuiteId suite) {
  return suite == SuiteId::basic ? "the basic suite" : kSuites[static_cast<size_t>(suite)].name;
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

std::vector<std::pair<std::string, Origin>> SuiteLedger::leaks() const {
  std::vector<std::pair<std::string, Origin>> leaks;
  for (size_t i = 0; i < kSuiteCount; ++i) {
    for (const Origin& origin : mHeld[i]) {
      leaks.emplace_back(NameOf(kSuites[i].name, kSuites[i].version), origin);
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

std::vector<Origin> Blocks::leaks() const {
  std::vector<Origin> leaks;
  for (const auto& [block, origin] : mOrigins) leaks.push_back(origin);
  std::sort(leaks.begin(), leaks.end(),
            [](const Origin& one, const Origin& other) { return one.text() < other.text(); });
  return leaks;
}

}  // namespace host
