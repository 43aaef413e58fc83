#include "RandomSessions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>
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
  std::set<std::string> missing;
  for (uint64_t number = 1; number <= 100; ++number) {
    std::istringstream lines(host::MakeRandomSession(1, number, fontManager));
    for (std::string line; std::getline(lines, line);) {
      if (line.find("missing export") != std::string::npos) missing.insert(line);
    }
  }
  EXPECT_EQ(missing, std::set<std::string>{"framework: {missing export: Mine}"});
}

}  // namespace
