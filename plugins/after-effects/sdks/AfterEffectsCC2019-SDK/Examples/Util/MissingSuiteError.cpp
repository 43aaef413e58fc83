#include "AEGP_SuiteHandler.h"

// A unit of its own, so that a plug-in that answers a missing suite otherwise can exchange it.
void AEGP_SuiteHandler::MissingSuiteError() const {
  throw static_cast<int>(PF_Err_BAD_CALLBACK_PARAM);
}
