#include "AEGP_SuiteHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeHost.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SuiteHandler, AcquiresOnFirstUseAndReleasesInTheOrderOfTheList) {
  {
    AEGP_SuiteHandler handler(fake_host.basicSuite());
    EXPECT_THAT(fake_host.calls, IsEmpty());
    handler.PersistentDataSuite3();
    handler.PersistentDataSuite4();
    handler.UtilitySuite6();
    EXPECT_EQ(handler.UtilitySuite3(), handler.UtilitySuite3());
    fake_host.calls.emplace_back("end");
  }
  EXPECT_THAT(fake_host.calls,
              ElementsAre("+AEGP Persistent Data Suite 3", "+AEGP Persistent Data Suite 4",
                          "+AEGP Utility Suite 13", "+AEGP Utility Suite 7", "end",
                          "-AEGP Utility Suite 7", "-AEGP Persistent Data Suite 4",
                          "-AEGP Persistent Data Suite 3", "-AEGP Utility Suite 13"));
}

TEST(SuiteHandler, ThrowsForWhatTheHostLacksAndTriesAgain) {
  EXPECT_THROW(AEGP_SuiteHandler(nullptr), int);
  AEGP_SuiteHandler handler(fake_host.basicSuite());
  fake_host.refusedSuites = {{"AEGP Proj Suite", 9}};
  try {
    handler.ProjSuite6();
    ADD_FAILURE() << "throws nothing";
  } catch (int error) {
    EXPECT_EQ(error, 516);
  }
  fake_host.refusedSuites.clear();
  EXPECT_NE(handler.ProjSuite6(), nullptr);
}

}  // namespace
