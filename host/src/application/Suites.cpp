#include "Suites.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

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

// Says what the plug-in asks for that isn't there.
void NoteMissing(std::string_view name, int32 version) {
  std::string versions;
  for (const Suite& suite : kSuites) {
    if (suite.name != name) continue;
    versions +=
        fmt::format("{} {}", versions.empty() ? ": this host has version" : " and", suite.version);
  }
  TheHost().noteOnce(Actor::plugIn,
                     fmt::format("asks for {}{}", NameOf(name, version),
                                 versions.empty() ? ", which this host doesn't supply" : versions));
}

SPErr AcquireSuite(const char* name, int32 version, const void** suite) {
  if (TheHost().faults.refuses(name, version)) {
    TheHost().countFailure("AcquireSuite");
    TheHost().noteOnce(Actor::host, "refuses " + NameOf(name, version));
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  const size_t index = IndexOf(name, version);
  if (index == kSuites.size()) {
    NoteMissing(name, version);
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  *suite = kSuites[index].table;
  TheHost().ledger.give(Holding::suite, *suite, TheHost().origin());
  return A_Err_NONE;
}

void NoteNotAcquired(const char* name, int32 version, const void** suite) {
  if (!name || !suite) return;
  *suite = nullptr;
  if (HasSuite(name, version)) TheHost().countFailure(NameOf(name, version));
  // What the code that the host's makers give away throws for any suite that it lacks.
  TheHost().countAnswer(PF_Err_BAD_CALLBACK_PARAM);
}

SPErr ReleaseSuite(const char* name, int32 version) {
  const size_t index = IndexOf(name, version);
  const void* const table = index < kSuites.size() ? kSuites[index].table : nullptr;
  if (TheHost().ledger.takeBack(Holding::suite, table)) return A_Err_NONE;
  const Origin* const released =
      table ? TheHost().ledger.takenBack(Holding::suite, table) : nullptr;
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
  *block = TheHost().memory.makeBlock(size);
  if (!*block) return A_Err_GENERIC;
  TheHost().ledger.give(Holding::block, *block, TheHost().origin());
  return A_Err_NONE;
}

SPErr FreeBlock(void* block) {
  TheHost().ledger.takeBack(Holding::block, block);
  TheHost().memory.freeBlock(block);
  return A_Err_NONE;
}

SPErr ReallocateBlock(void* block, size_t newSize, void** newBlock) {
  void* const moved = TheHost().memory.reallocate(block, newSize);
  if (!moved) return A_Err_GENERIC;
  TheHost().ledger.takeBack(Holding::block, block);
  TheHost().ledger.give(Holding::block, moved, TheHost().origin());
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

const void* TableOf(SuiteId suite) {
  return kSuites[static_cast<size_t>(suite)].table;
}

std::string NameOfTable(const void* table) {
  const auto* const found = std::find_if(kSuites.begin(), kSuites.end(),
                                         [&](const Suite& suite) { return suite.table == table; });
  return NameOf(found->name, found->version);
}

}  // namespace host
