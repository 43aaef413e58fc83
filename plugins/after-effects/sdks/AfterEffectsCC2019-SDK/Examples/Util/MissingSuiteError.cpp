#include "AEGP_SuiteHandler.h"

// Apart from the cache, so that a plug-in can exchange what it does about a missing suite.
void AEGP_SuiteHandler::MissingSuiteError() const {
  // `PF_Err_BAD_CALLBACK_PARAM`. Which of the host maker's headers has it isn't known here.
  constexpr int kBadCallbackParam = 516;
  throw kBadCallbackParam;
}
