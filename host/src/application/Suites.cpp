#include "Suites.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "Host.h"
#include "SuiteTables.h"

namespace host {
namespace {

struct Suite {
  const char* name;
  int32 version;
  const void* table;
};

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
size_t IndexOf(const char* name, int32 version) {
  const auto* const found = std::find_if(kSuites.begin(), kSuites.end(), [&](const Suite& suite) {
    return suite.version == version && std::strcmp(suite.name, name) == 0;
  });
  return static_cast<size_t>(found - kSuites.begin());
}

SPErr AcquireSuite(const char* name, int32 version, const void** suite) {
  return TheHost().suites.acquire(name, version, suite);
}

SPErr ReleaseSuite(const char* name, int32 version) {
  return TheHost().suites.release(name, version);
}

SPBoolean IsEqual(const char* token1, const char* token2) {
  return std::strcmp(token1, token2) == 0 ? 1 : 0;
}

SPErr AllocateBlock(size_t size, void** block) {
  *block = std::malloc(size);
  return *block ? 0 : A_Err_GENERIC;
}

SPErr FreeBlock(void* block) {
  std::free(block);
  return 0;
}

SPErr ReallocateBlock(void* block, size_t newSize, void** newBlock) {
  void* moved = std::realloc(block, newSize);
  if (!moved) return A_Err_GENERIC;
  *newBlock = moved;
  return 0;
}

SPBasicSuite basicSuite{
    .AcquireSuite = AcquireSuite,
    .ReleaseSuite = ReleaseSuite,
    .IsEqual = IsEqual,
    .AllocateBlock = AllocateBlock,
    .FreeBlock = FreeBlock,
    .ReallocateBlock = ReallocateBlock,
    NOT_SUPPLIED(Undefined),
};

}  // namespace

A_Err Fault(FailingFunction function) {
  const A_Err result = TheHost().faults.take(function);
  if (result != A_Err_NONE) {
    TheHost().timeline.add(Actor::host, fmt::format("{} fails with {}", function.name, result));
  }
  return result;
}

A_Err NoteNotSupplied(const char* function) {
  TheHost().timeline.record.notSupplied.emplace_back(function);
  TheHost().timeline.add(Actor::host, fmt::format("doesn't supply {}", function));
  return PF_Err_BAD_CALLBACK_PARAM;
}

SPBasicSuite* BasicSuite() {
  return &basicSuite;
}

bool HasSuite(const std::string& name, int32 version) {
  return IndexOf(name.c_str(), version) < kSuites.size();
}

SPErr SuiteLedger::acquire(const char* name, int32 version, const void** suite) {
  static_assert(kSuiteCount == kSuites.size());
  const size_t index = IndexOf(name, version);
  if (index == kSuiteCount || TheHost().faults.refuses(name, version)) {
    TheHost().noteRefusal(fmt::format("refuses {} {}", name, version));
    *suite = nullptr;
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  ++mOutstanding[index];
  ++mAcquisitions;
  *suite = kSuites[index].table;
  return 0;
}

SPErr SuiteLedger::release(const char* name, int32 version) {
  const size_t index = IndexOf(name, version);
  if (index == kSuiteCount || mOutstanding[index] == 0) {
    mViolations.push_back(fmt::format("{} {} was released but not acquired", name, version));
    return A_Err_GENERIC;
  }
  --mOutstanding[index];
  return 0;
}

std::vector<std::string> SuiteLedger::findings() const {
  std::vector<std::string> findings = mViolations;
  for (size_t i = 0; i < kSuiteCount; ++i) {
    if (mOutstanding[i] == 0) continue;
    const Suite& suite = kSuites[i];
    findings.push_back(fmt::format("{} {} was acquired and not released, {} time(s)", suite.name,
                                   suite.version, mOutstanding[i]));
  }
  return findings;
}

}  // namespace host
