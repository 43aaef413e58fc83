#include "AEGP_SuiteHandler.h"

#include "DebugUtils.h"

AEGP_SuiteHandler::AEGP_SuiteHandler(const SPBasicSuite* basic) : mBasic(basic) {
  if (!mBasic) MissingSuiteError();
}

AEGP_SuiteHandler::~AEGP_SuiteHandler() {
  ReleaseAllSuites();
}

void* AEGP_SuiteHandler::LoadSuite(const char* name, int version) const {
  const void* suite = nullptr;
  if (mBasic->AcquireSuite(name, version, &suite) != 0 || !suite) {
    if (TraceIsOn()) {
      OutputIndentedAndFormattedString(0, "The host refuses '%s', version %d", name, version);
    }
    MissingSuiteError();
  }
  return const_cast<void*>(suite);
}

void AEGP_SuiteHandler::ReleaseSuite(const char* name, int version) {
  mBasic->ReleaseSuite(name, version);
}

void AEGP_SuiteHandler::ReleaseAllSuites() {
  for (size_t index = 0; index < kSuiteList.size(); ++index) {
    if (mSuites[index]) ReleaseSuite(kSuiteList[index].name, kSuiteList[index].version);
  }
}
