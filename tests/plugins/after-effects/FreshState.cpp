#include "AfterEachTest.h"
#include "FakeHost.h"
#include "FakeTamberlink.h"
#include "GlobalState.h"
#include "NSAppOverride.h"
#include "VirtualTime.h"

namespace {

// A test that follows in the same process finds the fakes and the plug-in as they are at start-up.
const bool kStartsFresh = AfterEachTest([] {
  global_state = GlobalState();
  projectWasOpened();
  delete fake_tamberlink.Install();
  fake_tamberlink = {};
  fake_host = {};
  // The plug-in asks anew whether it is enabled after 10 seconds.
  virtual_time += 10;
});

}  // namespace
