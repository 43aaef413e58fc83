#include "GetNameForErrorCode.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

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
