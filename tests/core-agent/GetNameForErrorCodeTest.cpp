#include "GetNameForErrorCode.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

TEST(GetNameForErrorCode, KnowsTheWholeNumberingAndNothingElse) {
  const std::pair<uint32_t, const char*> rows[] = {
      {0x00000000, "CoreErrorCodes::kSuccess"},
      {0x05000000, "CoreErrorCodes::kNullPointer"},
      {0x0A000000, "CoreErrorCodes::kItemNotHandled"},
      {0x0C000000, "CoreErrorCodes::kIndexOutOfRange"},
      {0x15000000, "CoreErrorCodes::kUnknownError"},
      {0x02001004, "GFile::kOpenFailed"},
      {0x0C001005, "GFileSystem::kInvalidCharacterForFileSystemRepresentation"},
      {0x05001007, "GValue::kValueConversionError"},
      {0x0B001008, "GLibXMLSerializable::kRequiredTextIsBlank"},
      {0x01001009, "GIPCReceiver::kInvalidName"},
      {0x0100100A, "GIPCSender::kInvalidName"},
      {0x0100100B, "GMutex::kMutexDeadlockErr"},
      {0x0200100B, "GMutex::kMutexInvalidErr"},
      {0x0100100C, "GLockable::kLockBusyErr"},
      {0x0200100E, "GIPCClient::kReplyTimeout"},
      {0x16001012, "GSqliteDatabase::kCannotEndTransactionOutOfOrder"},
      {0x01001014, "GDateTime::kParsingError"},
      {0x14002001, "GCorvennaDataFacade::kCannotDeleteFonts"},
      {0x10004001, "GFontActivationManager::kCantActivateWebFonts"},
      // Two classes share this number.
      {0x05004005, "GKVMessageHandler_FontAdder::kErrorAddingFontToServer"},
      {0x07004005, "GFontToolResults::kFontAlreadyInDatabase"},
      {0x0100400D, "GFontToolResults::kNotAFontFile"},
      {0x0E004007, "GCorvennaExportFonts::kNoAvailableFontsToExport"},
      {0x0F004009, "GCorvennaSetManager::kCannotAddSetsToWorkgroup"},
      {0x11004018, "GFontServerProxy::kTooManyRequests"},
      {0x03007003, "GOmbrelVaultCommand::kPathDataNotSpecified"},
      {0x0300A002, "GScopedXMPFile::kXMPError"},
      // Holes in the numbering.
      {0x0B000000, "Unknown error code"},
      {0x16000000, "Unknown error code"},
      {0x7F001005, "Unknown error code"},
      {0x00001005, "Unknown error code"},
      {0x0100100E, "Unknown error code"},
      {0x07002001, "Unknown error code"},
      {0x02004005, "Unknown error code"},
      {0x06004005, "Unknown error code"},
      {0x0700400D, "Unknown error code"},
      {0xFFFFFFFF, "Unknown error code"},
  };
  for (const int pass : {1, 2}) {
    for (const auto& [code, name] : rows) {
      EXPECT_EQ(GetNameForErrorCode(code), name) << std::hex << code << ", pass " << pass;
    }
  }
}

}  // namespace
