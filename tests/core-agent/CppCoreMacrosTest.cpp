#include "CppCoreMacros.h"

#include <gmock/gmock.h>

#include <climits>

#include "LogLines.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

const char* AbsentDirectory(size_t) {
  return nullptr;
}

uint32_t Answer(uint32_t code) {
  return code;
}

TEST(CppCoreMacros, PassedChecksSetTheCodeToZeroAndGoOn) {
  const LogLines log;
  uint32_t err = 17;
  const uint32_t code = [&] {
    CORE_CHECK_RESULT(Answer(0), "Miscellaneous");
    EXPECT_EQ(std::exchange(err, 17), 0u);
    CORE_CHECK_CONDITION(err == 0, CoreErrorCodes::kError, "Miscellaneous");
    EXPECT_EQ(std::exchange(err, 17), 0u);
    CORE_CHECK_NOT_NULL(&err, "Miscellaneous");
    return err + 99;
  }();
  EXPECT_EQ(code, 99u);
  EXPECT_THAT(log.Entries(), IsEmpty());
}

constexpr int kFirstCheck = __LINE__ + 5;
uint32_t FailedCheck(int which) {
  uint32_t err = CoreErrorCodes::kInvalidParam;
  const char* const gmtZone = AbsentDirectory(1);
  // NOLINTNEXTLINE(modernize-use-nullptr): the log shows NULL as it is written
  if (which == 0) CORE_CHECK_CONDITION(NULL == AbsentDirectory(PATH_MAX), 0x01000000, "FileSystem");
  if (which == 1) CORE_CHECK_RESULT(Answer(0x01001014), "Miscellaneous");
  if (which == 2) CORE_CHECK_NOT_NULL(gmtZone, "Miscellaneous");
  if (which == 3) CORE_CHECK_RESULT(err, "FileSystem");
  return 99;
}

TEST(CppCoreMacros, AFailedCheckIsReportedWithItsPlaceAndLeavesTheFunctionWithItsCode) {
  const struct {
    uint32_t code;
    std::string category, name, expression;
  } rows[] = {
      {16777216, "FileSystem", "CoreErrorCodes::kError", "NULL == AbsentDirectory(PATH_MAX)"},
      {16781332, "Miscellaneous", "GDateTime::kParsingError", "Answer(0x01001014)"},
      {83886080, "Miscellaneous", "CoreErrorCodes::kNullPointer", "(gmtZone) == nullptr"},
      {67108864, "FileSystem", "CoreErrorCodes::kInvalidParam", "err"}};
  for (int i = 0; i < 4; ++i) {
    const auto& row = rows[i];
    const LogLines log;
    EXPECT_EQ(FailedCheck(i), row.code);
    EXPECT_THAT(
        log.Lines(),
        ElementsAre(EndsWith("]\t[" + row.category + "]\t[Error]\tError='" + row.name +
                             "'  File='" __FILE__ "'  Line=" + std::to_string(kFirstCheck + i) +
                             "  Expression='" + row.expression + "'  Code='" +
                             std::to_string(row.code) + "'  \n")));
  }
}

TEST(GetNameForErrorCode, KnowsNamesAndLeavesHolesUnknown) {
  const std::pair<uint32_t, const char*> rows[] = {
      {0x00000000, "CoreErrorCodes::kSuccess"},
      {0x15000000, "CoreErrorCodes::kUnknownError"},
      {0x0C001005, "GFileSystem::kInvalidCharacterForFileSystemRepresentation"},
      {0x01001009, "GIPCReceiver::kInvalidName"},
      {0x0100100A, "GIPCSender::kInvalidName"},
      // Two classes share this number.
      {0x05004005, "GKVMessageHandler_FontAdder::kErrorAddingFontToServer"},
      {0x07004005, "GFontToolResults::kFontAlreadyInDatabase"},
      {0x0300A002, "GScopedXMPFile::kXMPError"}};
  for (const auto& [code, name] : rows) EXPECT_EQ(GetNameForErrorCode(code), name) << code;
  for (const uint32_t hole : {0x0B000000u, 0x16000000u, 0x7F001005u, 0x00001005u, 0x0100100Eu,
                              0x07002001u, 0x02004005u, 0x06004005u, 0x0700400Du, 0xFFFFFFFFu}) {
    EXPECT_EQ(GetNameForErrorCode(hole), "Unknown error code") << hole;
  }
}

}  // namespace
