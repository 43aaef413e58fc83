#pragma once

#include "AE_GeneralPlug.h"
#include "GlobalStateInterface.h"
#include "TBKCallTracker.h"

// The work of an idle tick, after the state took the tick's snapshot. Sets the flags of the calls
// that it made in `tracker`. Returns host codes, 0 for success. Throws the `int` 516 if the host
// lacks a suite. Main thread only.

/// Asks the framework at most once in 10 seconds whether the plug-in is enabled.
///
/// Enabled: runs the activation's step that is due, or else lets the modal override act and reports
/// the document events that the snapshot shows. Disabled: stops the modal override, and tells the
/// user once if the framework wants it. Returns the step's code, or 0.
A_Err runIdleEvents(GlobalStateInterface* state, TBKCallTracker* tracker);

/// Runs the step of the font activation process that is due at `state->ticksSinceActivationStart`,
/// if any. Returns the host's code for the reopening of the project, 0 on every other tick.
A_Err runStepInFontActivationProcess(GlobalStateInterface* state, TBKCallTracker* tracker);
