#include "Suites.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "SuiteFunction.h"

namespace host {
namespace {

struct Suite {
  std::string_view name;
  int32 version;
  const void* table;
};

const std::array kSuites{
    Suite{kAEGPRegisterSuite, kAEGPRegisterSuiteVersion5, &kRegisterSuite5},
    Suite{kAEGPCommandSuite, kAEGPCommandSuiteVersion1, &kCommandSuite1},
    Suite{kAEGPUtilitySuite, kAEGPUtilitySuiteVersion3, &kUtilitySuite3},
    Suite{kAEGPUtilitySuite, kAEGPUtilitySuiteVersion6, &kUtilitySuite6},
    Suite{kAEGPProjSuite, kAEGPProjSuiteVersion6, &kProjSuite6},
    Suite{kAEGPMemorySuite, kAEGPMemorySuiteVersion1, &kMemorySuite1},
    Suite{kPFAdvAppSuite, kPFAdvAppSuiteVersion2, &kAdvAppSuite2},
    Suite{kAEGPPersistentDataSuite, kAEGPPersistentDataSuiteVersion3, &kPersistentDataSuite3},
    Suite{kAEGPPersistentDataSuite, kAEGPPersistentDataSuiteVersion4, &kPersistentDataSuite4},
};

// Returns null if there is none.
const Suite* Find(std::string_view name, int32 version) {
  for (const Suite& suite : kSuites) {
    if (suite.version == version && suite.name == name) return &suite;
  }
  return nullptr;
}

// Says what the plug-in asks for that isn't there.
void NoteMissing(Host& host, std::string_view name, int32 version) {
  std::string versions;
  for (const Suite& suite : kSuites) {
    if (suite.name != name) continue;
    versions +=
        fmt::format("{} {}", versions.empty() ? ": this host has version" : " and", suite.version);
  }
  host.noteOnce(Actor::plugIn,
                fmt::format("asks for {}{}", NameOfSuite(name, version),
                            versions.empty() ? ", which this host doesn't supply" : versions));
}

SPErr AcquireSuite(Host& host, A_Err fault, const char* name, int32 version, const void** suite) {
  const std::string wanted = NameOfSuite(name, version);
  const Suite* const found = Find(name, version);
  const A_Err error = fault != A_Err_NONE ? fault : host.faults.take(wanted);
  if (found && error == A_Err_NONE) {
    *suite = found->table;
    host.ledger.giveSuite(*suite, host.origin());
    return A_Err_NONE;
  }
  *suite = nullptr;
  // The host's makers give away code that throws this error for any suite that it doesn't get. A
  // hook may return it then.
  host.tellAnswer(PF_Err_BAD_CALLBACK_PARAM);
  if (!found) {
    NoteMissing(host, name, version);
    return error != A_Err_NONE ? error : A_Err{PF_Err_BAD_CALLBACK_PARAM};
  }
  host.tellFailure(wanted);
  if (fault == A_Err_NONE) {
    host.tellFailure("AcquireSuite");
    host.noteOnce(Actor::host, "refuses " + wanted);
  }
  return error;
}

SPErr ReleaseSuite(Host& host, const char* name, int32 version) {
  const Suite* const suite = Find(name, version);
  const void* const table = suite ? suite->table : nullptr;
  if (host.ledger.takeBack(Holding::suite, table)) return A_Err_NONE;
  const Origin* const released = table ? host.ledger.takenBack(Holding::suite, table) : nullptr;
  return host.misused(
      Finding::suiteReleasedTooOften,
      fmt::format(
          "{} isn't acquired{}", NameOfSuite(name, version),
          released ? fmt::format("; the one from {} was released before", released->text()) : ""));
}

SPBoolean IsEqual(Host& /*host*/, const char* token1, const char* token2) {
  return std::strcmp(token1, token2) == 0 ? 1 : 0;
}

SPErr AllocateBlock(Host& host, size_t size, void** block) {
  *block = host.ledger.giveBlock(size, host.origin());
  return *block ? A_Err{A_Err_NONE} : A_Err{A_Err_GENERIC};
}

void FreeBlock(Host& host, void* block) {
  host.ledger.takeBack(Holding::block, block);
}

SPErr ReallocateBlock(Host& host, void* block, size_t newSize, void** newBlock) {
  void* moved = nullptr;
  if (const SPErr error = AllocateBlock(host, newSize, &moved)) return error;
  const size_t oldSize = host.ledger.find(Holding::block, block)->bytes.size();
  std::memcpy(moved, block, std::min(newSize, oldSize));
  FreeBlock(host, block);
  *newBlock = moved;
  return A_Err_NONE;
}

SPBasicSuite basicSuite{
    SUPPLIED(basicSuite, AcquireSuite, AcquireSuite, "name", "version", "suite"),
    GIVES_BACK(basicSuite, ReleaseSuite, ReleaseSuite, "name", "version"),
    SUPPLIED(basicSuite, IsEqual, IsEqual, "token1", "token2"),
    SUPPLIED(basicSuite, AllocateBlock, AllocateBlock, "size", "block"),
    GIVES_BACK(basicSuite, FreeBlock, FreeBlock, "block"),
    SUPPLIED(basicSuite, ReallocateBlock, ReallocateBlock, "block", "newSize", "newBlock"),
    NOT_SUPPLIED(basicSuite, Undefined),
};

}  // namespace

SPBasicSuite* BasicSuite() {
  return &basicSuite;
}

std::string NameOfSuite(std::string_view name, int32 version) {
  return fmt::format("{} {}", name, version);
}

std::string NameOfSuite(const void* table) {
  for (const Suite& suite : kSuites) {
    if (suite.table == table) return NameOfSuite(suite.name, suite.version);
  }
  return "the basic suite";
}

bool HasSuite(std::string_view nameAndVersion) {
  return std::any_of(kSuites.begin(), kSuites.end(), [&](const Suite& suite) {
    return NameOfSuite(suite.table) == nameAndVersion;
  });
}

}  // namespace host
