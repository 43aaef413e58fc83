#include "RandomSessions.h"

#include <gtest/gtest.h>

#include <string>

#include "FontManager.h"

namespace {

TEST(RandomSession, HasCallsOfTheHostFailNowAndThen) {
  constexpr uint64_t kCount = 200;
  const host::FontManager fontManager("");
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

}  // namespace
