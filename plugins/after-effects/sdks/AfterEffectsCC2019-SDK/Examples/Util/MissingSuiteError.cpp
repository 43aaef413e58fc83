#include "AEGP_SuiteHandler.h"

// In a file of its own, so that a plug-in can replace the reaction to a missing suite.
void AEGP_SuiteHandler::MissingSuiteError() const {
  // `PF_Err_BAD_CALLBACK_PARAM`, which an SDK may declare in another header than ours does.
  constexpr MissingSuite kBadCallbackParam = 516;
  throw kBadCallbackParam;
}
