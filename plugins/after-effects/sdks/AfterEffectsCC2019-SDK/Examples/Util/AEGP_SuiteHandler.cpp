#include "AEGP_SuiteHandler.h"

#include <string>

#include "DebugUtils.h"

namespace {

// A host that lacks a suite lacks it on every tick.
void traceOnce(const std::string& text) {
  if (IsNews(text, text)) OutputIndentedAndFormattedString(0, "%s", text.c_str());
}

}  // namespace

AEGP_SuiteHandler::AEGP_SuiteHandler(const SPBasicSuite* basic) : mBasic(basic) {
  if (mBasic) return;
  traceOnce("The host gives no basic suite");
  MissingSuiteError();
}

AEGP_SuiteHandler::~AEGP_SuiteHandler() {
  ReleaseAllSuites();
}

void* AEGP_SuiteHandler::LoadSuite(const char* name, int version) const {
  const void* suite = nullptr;
  if (mBasic->AcquireSuite(name, version, &suite) != 0 || !suite) {
    traceOnce(std::string("The host refuses '") + name + "', version " + std::to_string(version));
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
