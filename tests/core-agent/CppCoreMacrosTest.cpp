#include "CppCoreMacros.h"

#include <gmock/gmock.h>

#include <climits>

#include "LogLines.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr uint32_t kParsingError = 0x01001014;

const char* AbsentDirectory(size_t) {
  return nullptr;
}

uint32_t Answer(uint32_t code) {
  return code;
}

TEST(CppCoreMacros, PassedChecksSetTheCodeToZeroAndGoOn) {
  const LogLines log;
  bool reachedTheEnd = false;
  uint32_t err = 17;
  const uint32_t code = [&] {
    CORE_CHECK_RESULT(Answer(0), "Miscellaneous");
    EXPECT_EQ(err, 0u);
    err = 17;
    CORE_CHECK_CONDITION(err == 0, CoreErrorCodes::kError, "Miscellaneous");
    EXPECT_EQ(err, 0u);
    err = 17;
    CORE_CHECK_NOT_NULL(&err, "Miscellaneous");
    reachedTheEnd = true;
    return err;
  }();
  EXPECT_EQ(code, 0u);
  EXPECT_TRUE(reachedTheEnd);
  EXPECT_THAT(log.Entries(), IsEmpty());
}

TEST(CppCoreMacros, AFailedCheckIsReportedAndLeavesTheFunctionWithItsCode) {
  struct {
    uint32_t (*function)();
    uint32_t code;
    std::string entry;
  } const rows[] = {
      {[] {
         uint32_t err = CoreErrorCodes::kSuccess;
         CORE_CHECK_RESULT(Answer(kParsingError), "Miscellaneous");
         return err + 1;
       },
       kParsingError,
       CheckEntry("Miscellaneous", "GDateTime::kParsingError", "Answer(kParsingError)",
                  kParsingError)},
      {[] {
         uint32_t err = CoreErrorCodes::kSuccess;
         // NOLINTNEXTLINE(modernize-use-nullptr): the text must show NULL, not what it stands for
         CORE_CHECK_CONDITION(NULL == AbsentDirectory(PATH_MAX), CoreErrorCodes::kError,
                              "FileSystem");
         return err + 1;
       },
       CoreErrorCodes::kError,
       CheckEntry("FileSystem", "CoreErrorCodes::kError", "NULL == AbsentDirectory(PATH_MAX)",
                  0x01000000)},
      {[] {
         uint32_t err = CoreErrorCodes::kSuccess;
         const char* const gmtZone = AbsentDirectory(1);
         CORE_CHECK_NOT_NULL(gmtZone, "Miscellaneous");
         return err + 1;
       },
       CoreErrorCodes::kNullPointer,
       CheckEntry("Miscellaneous", "CoreErrorCodes::kNullPointer", "(gmtZone) == nullptr",
                  83886080)},
      {[] {
         uint32_t err = CoreErrorCodes::kInvalidParam;
         CORE_CHECK_RESULT(err, "FileSystem");
         return err + 1;
       },
       CoreErrorCodes::kInvalidParam,
       CheckEntry("FileSystem", "CoreErrorCodes::kInvalidParam", "err", 0x04000000)},
  };
  const LogLines log;
  for (const auto& row : rows) {
    EXPECT_EQ(row.function(), row.code);
    ASSERT_FALSE(log.Entries().empty());
    EXPECT_EQ(log.Entries().back(), row.entry);
  }
  EXPECT_EQ(log.Lines().size(), std::size(rows));
}

TEST(CppCoreMacros, TheEntryOfAFailedCheckNamesFileAndLine) {
  const LogLines log;
  int line = 0;
  [&line] {
    uint32_t err = CoreErrorCodes::kSuccess;
    line = __LINE__ + 1;
    CORE_CHECK_CONDITION(line > 0, CoreErrorCodes::kNotFound, "FileSystem");
    return err;
  }();
  ASSERT_EQ(log.Lines().size(), 1u);
  EXPECT_THAT(
      log.Lines()[0],
      testing::EndsWith("]\t[FileSystem]\t[Error]\tError='CoreErrorCodes::kNotFound'  "
                        "File='" __FILE__ "'  Line=" +
                        std::to_string(line) + "  Expression='line > 0'  Code='117440512'  \n"));
}

TEST(CppCoreMacros, ACheckAtALevelBelowTheThresholdStillLeavesTheFunction) {
  const LogLines log;
  const auto check = [] {
    uint32_t err = CoreErrorCodes::kSuccess;
    CORE_CHECK_RESULT_AT_LEVEL(Answer(7), GLogger::kLoggingLevelDebug, "Lockable");
    return err + 1;
  };
  EXPECT_EQ(check(), 7u);
  EXPECT_THAT(log.Entries(), IsEmpty());

  GLogger::GetSharedInstance()->SetLoggingLevelForIdentifier("Lockable",
                                                             GLogger::kLoggingLevelDebug);
  EXPECT_EQ(check(), 7u);
  EXPECT_THAT(log.Entries(),
              ElementsAre(CheckEntry("Lockable", "Unknown error code", "Answer(7)", 7, "Debug")));
}

}  // namespace
