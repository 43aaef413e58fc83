#include "AEGP_SuiteHandler.h"

// Apart from the cache, so that a plug-in can exchange what it does about a missing suite.
void AEGP_SuiteHandler::MissingSuiteError() const {
  // `PF_Err_BAD_CALLBACK_PARAM`, which an SDK may declare in another header than ours does.
  constexpr int kBadCallbackParam = 516;
  throw kBadCallbackParam;
}
