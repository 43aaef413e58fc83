#pragma once

#include "AE_GeneralPlug.h"
#include "GlobalStateInterface.h"
#include "TBKCallTracker.h"

// What happens on an idle tick, once the state holds the tick's snapshot. `tracker` gets the flags
// of the calls that were made. Host codes, 0 for success. Main thread only.

/// Runs the step of the font activation process that is due, or else reports the document events
/// that the snapshot shows, as long as the framework reports the plug-in enabled; it is asked at
/// most once in 10 seconds. Returns the step's code.
A_Err runIdleEvents(GlobalStateInterface* state, TBKCallTracker* tracker);

/// Does the step that is due at `state->ticksSinceActivationStart`, or nothing. Returns the host's
/// code for the reopening of the project, 0 on every other tick.
A_Err runStepInFontActivationProcess(GlobalStateInterface* state, TBKCallTracker* tracker);

/// Works out from the last and the current snapshot whether the project was opened, saved, saved
/// under another name or closed, and tells the framework. An event is never retried.
void listenAndHandleProjectEvents(GlobalStateInterface* state, TBKCallTracker* tracker);
