#pragma once

#include "AE_GeneralPlug.h"
#include "GlobalStateInterface.h"
#include "TBKCallTracker.h"

/// Does the work of an idle tick, after the state took the tick's snapshot. Asks the framework at
/// most once in 10 seconds whether the plug-in is enabled.
///
/// Enabled: runs the activation's step that is due, or else lets the modal override act and reports
/// the document events that the snapshot shows. Disabled: stops the modal override, and tells the
/// user once if the framework wants it.
///
/// Sets the flags of the calls that it made in `tracker`. Returns the step's host code, or 0.
/// Throws `MissingSuite`. Main thread only.
A_Err runIdleEvents(GlobalStateInterface* state, TBKCallTracker* tracker);
