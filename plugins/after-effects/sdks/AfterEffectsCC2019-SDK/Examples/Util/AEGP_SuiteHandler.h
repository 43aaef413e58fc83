#pragma once

#include <array>
#include <cstddef>

#include "AEGP_SuiteList.h"
#include "AE_AdvEffectSuites.h"
#include "AE_GeneralPlug.h"
#include "OldSuites.h"
#include "SPBasic.h"

/// The host's error for a missing suite, always 516.
using MissingSuite = int;

/// Caches the host's suites. An accessor acquires its suite at the first call; later calls are one
/// test and one load. The destructor releases what was acquired, so no suite outlives it.
///
/// An accessor throws `MissingSuite` if the host refuses the suite, and tries again at the next
/// call. For one thread.
class AEGP_SuiteHandler {
 public:
  /// Doesn't own `basic`. Throws `MissingSuite` for null.
  explicit AEGP_SuiteHandler(const SPBasicSuite* basic);
  ~AEGP_SuiteHandler();
  AEGP_SuiteHandler(const AEGP_SuiteHandler&) = delete;
  AEGP_SuiteHandler& operator=(const AEGP_SuiteHandler&) = delete;

  const AEGP_CommandSuite1* CommandSuite1() const {
    return Suite<AEGP_CommandSuite1, AEGP_SuiteIndex("AEGP Command Suite", 1)>();
  }
  const AEGP_RegisterSuite5* RegisterSuite5() const {
    return Suite<AEGP_RegisterSuite5, AEGP_SuiteIndex("AEGP Register Suite", 6)>();
  }
  const UtilitySuiteVersion7* UtilitySuite3() const {
    return Suite<UtilitySuiteVersion7, AEGP_SuiteIndex("AEGP Utility Suite", 7)>();
  }
  const AEGP_UtilitySuite6* UtilitySuite6() const {
    return Suite<AEGP_UtilitySuite6, AEGP_SuiteIndex("AEGP Utility Suite", 13)>();
  }
  const AEGP_ProjSuite6* ProjSuite6() const {
    return Suite<AEGP_ProjSuite6, AEGP_SuiteIndex("AEGP Proj Suite", 9)>();
  }
  const AEGP_MemorySuite1* MemorySuite1() const {
    return Suite<AEGP_MemorySuite1, AEGP_SuiteIndex("AEGP Memory Suite", 1)>();
  }
  const PF_AdvAppSuite2* AdvAppSuite2() const {
    return Suite<PF_AdvAppSuite2, AEGP_SuiteIndex("PF AE Adv App Suite", 2)>();
  }
  const PersistentDataSuiteVersion3* PersistentDataSuite3() const {
    return Suite<PersistentDataSuiteVersion3, AEGP_SuiteIndex("AEGP Persistent Data Suite", 3)>();
  }
  const AEGP_PersistentDataSuite4* PersistentDataSuite4() const {
    return Suite<AEGP_PersistentDataSuite4, AEGP_SuiteIndex("AEGP Persistent Data Suite", 4)>();
  }

  /// Acquires a suite without the cache. Throws `MissingSuite` if the host refuses it.
  void* LoadSuite(const char* name, int version) const;
  /// Releases one acquisition.
  void ReleaseSuite(const char* name, int version);
  /// Releases every cached suite, in the order of the list. Only for the destructor, since the
  /// cache keeps its pointers.
  void ReleaseAllSuites();
  /// Throws `MissingSuite`.
  [[noreturn]] void MissingSuiteError() const;

 private:
  template <class Table, size_t index>
  const Table* Suite() const {
    void*& suite = mSuites[index];
    if (!suite) suite = LoadSuite(kSuiteList[index].name, kSuiteList[index].version);
    return static_cast<const Table*>(suite);
  }

  const SPBasicSuite* mBasic;
  mutable std::array<void*, kSuiteList.size()> mSuites{};
};
