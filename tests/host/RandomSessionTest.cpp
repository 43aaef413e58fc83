#include "RandomSessions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "FontManager.h"
#include "TemporaryFolder.h"

namespace {

TEST(RandomSession, HasCallsOfTheHostFailNowAndThen) {
  constexpr uint64_t kCount = 200;
  const host::SessionPart fontManager = host::MakeFontManager("");
  uint64_t faulty = 0;
  for (uint64_t number = 1; number <= kCount; ++number) {
    const std::string session = host::MakeRandomSession(1, number, fontManager);
    if (session.find("fail:") != std::string::npos ||
        session.find("refuse:") != std::string::npos) {
      ++faulty;
    }
  }
  EXPECT_GT(faulty, kCount / 5);
  EXPECT_LT(faulty, kCount / 2);
}

TEST(RandomSession, HasOnlyFrameworksOfTheFolder) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.path() / "Tamberlink.framework");
  std::filesystem::create_directories(folder.path() / "without-Mine");
  const host::SessionPart fontManager = host::MakeFontManager(folder.path());
  std::string sessions;
  for (uint64_t number = 1; number <= 100; ++number) {
    sessions += host::MakeRandomSession(1, number, fontManager);
  }
  EXPECT_NE(sessions.find("missing export: Mine}"), std::string::npos);
  EXPECT_EQ(sessions.find("missing export: all"), std::string::npos);
}

}  // namespace
