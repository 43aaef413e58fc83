#pragma once

#include "AE_GeneralPlug.h"
#include "GlobalStateInterface.h"
#include "TBKCallTracker.h"

/// Runs the step of the font activation process that is due at `state->ticksSinceActivationStart`,
/// if any. Sets the flags of the calls that it made in `tracker`. Returns the host's code for the
/// reopening of the project, 0 on every other tick. Throws `MissingSuite`. Main thread only.
A_Err runStepInFontActivationProcess(GlobalStateInterface* state, TBKCallTracker* tracker);
