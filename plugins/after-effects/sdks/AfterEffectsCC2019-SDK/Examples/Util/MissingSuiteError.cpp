#include "AEGP_SuiteHandler.h"

// Apart from the cache, so that a plug-in can exchange what it does about a missing suite.
void AEGP_SuiteHandler::MissingSuiteError() const {
  constexpr int kBadCallbackParam = 516;  // the host's name for it is in a header for effects
  throw kBadCallbackParam;
}
