#pragma once

#include "AfterEachTest.h"
#include "CocoaFakes.h"

/// Lets the next test find the platform's functions as they are at start-up.
inline const bool kCocoaFakesStartFresh = AfterEachTest([] { cocoaFakes = {}; });
