#pragma once

#include "AE_GeneralPlug.h"
#include "GlobalStateInterface.h"
#include "TBKCallTracker.h"

// What happens on an idle tick, once the state holds the tick's snapshot. `tracker` gets the flags
// of the calls that were made. Host codes, 0 for success. A suite that the host lacks throws the
// `int` 516. Main thread only.

/// Runs the step of the font activation process that is due, or else reports the document events
/// that the snapshot shows, as long as the framework reports the plug-in enabled; it is asked at
/// most once in 10 seconds. Lets the modal override act, outside a process, while it is enabled,
/// and not while it is disabled; then the user is told once, if the framework wants it. Returns the
/// step's code.
A_Err runIdleEvents(GlobalStateInterface* state, TBKCallTracker* tracker);

/// Does the step that is due at `state->ticksSinceActivationStart`, or nothing. Returns the host's
/// code for the reopening of the project, 0 on every other tick.
A_Err runStepInFontActivationProcess(GlobalStateInterface* state, TBKCallTracker* tracker);
