#include "AEGP_SuiteHandler.h"

// Apart from the cache, so that a plug-in can exchange what it does about a missing suite.
void AEGP_SuiteHandler::MissingSuiteError() const {
  throw static_cast<int>(PF_Err_BAD_CALLBACK_PARAM);
}
