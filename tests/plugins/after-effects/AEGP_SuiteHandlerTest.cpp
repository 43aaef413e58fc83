#include "AEGP_SuiteHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AE_GeneralPlug.h"
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

// The host's answer to an acquisition.
SPErr acquireResult = 0;
const void* acquiredTable = nullptr;

SPErr AnswerAcquisition(const char*, int32, const void** suite) {
  *suite = acquiredTable;
  return acquireResult;
}

TEST(SuiteHandler, ThrowsForWhatTheHostLacksAndTriesAgain) {
  EXPECT_THROW(AEGP_SuiteHandler(nullptr), int);
  SPBasicSuite basic = *fake_host.basicSuite();
  basic.AcquireSuite = AnswerAcquisition;
  const AEGP_SuiteHandler handler(&basic);
  const AEGP_ProjSuite6 table{};
  const std::pair<SPErr, const void*> refusals[] = {{1, nullptr}, {1, &table}, {0, nullptr}};
  for (const auto& [result, given] : refusals) {
    SCOPED_TRACE(testing::Message() << result << (given ? " with a table" : " without a table"));
    acquireResult = result;
    acquiredTable = given;
    try {
      handler.ProjSuite6();
      ADD_FAILURE() << "throws nothing";
    } catch (int error) {
      EXPECT_EQ(error, 516);
    }
  }
  acquireResult = 0;
  acquiredTable = &table;
  EXPECT_EQ(handler.ProjSuite6(), &table);
}

}  // namespace
