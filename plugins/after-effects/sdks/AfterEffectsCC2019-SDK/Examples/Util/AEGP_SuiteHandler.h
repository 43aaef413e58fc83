#pragma once

#include <array>
#include <cstddef>

#include "AEGP_SuiteList.h"
#include "AE_AdvEffectSuites.h"
#include "AE_GeneralPlug.h"
#include "SPBasic.h"

/// Lazy cache of the host's suites: an accessor's first call acquires the suite, later calls are
/// one test and one load, and the destructor gives back all that were acquired.
///
/// A pointer from an accessor must not be kept past the handler. A suite that the host refuses
/// throws the `int` 516 from its accessor, and the next call tries
/// again. Belongs to the thread that uses it.
class AEGP_SuiteHandler {
 public:
  /// `basic` isn't owned. Null throws the `int` 516.
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
  const AEGP_UtilitySuite3* UtilitySuite3() const {
    return Suite<AEGP_UtilitySuite3, AEGP_SuiteIndex("AEGP Utility Suite", 7)>();
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
  const AEGP_PersistentDataSuite3* PersistentDataSuite3() const {
    return Suite<AEGP_PersistentDataSuite3, AEGP_SuiteIndex("AEGP Persistent Data Suite", 3)>();
  }
  const AEGP_PersistentDataSuite4* PersistentDataSuite4() const {
    return Suite<AEGP_PersistentDataSuite4, AEGP_SuiteIndex("AEGP Persistent Data Suite", 4)>();
  }

  /// Acquires a suite, past the cache. Throws the `int` 516 when the host refuses it.
  void* LoadSuite(const char* name, int version) const;
  /// Gives one acquisition back to the host.
  void ReleaseSuite(const char* name, int version);
  /// Gives back every suite in the cache, in the order of the list. The cache isn't cleared: this
  /// is the destructor's walk.
  void ReleaseAllSuites();
  /// Throws the `int` 516.
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
