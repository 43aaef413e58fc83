#include "AEGP_SuiteHandler.h"

// A unit of its own, so that a plug-in that answers a missing suite otherwise can exchange it.
void AEGP_SuiteHandler::MissingSuiteError() const {
  constexpr int kBadCallbackParam = 516;  // the host's name for it is in a header for effects
  throw kBadCallbackParam;
}
