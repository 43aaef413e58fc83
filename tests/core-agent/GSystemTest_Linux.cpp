#include <gtest/gtest.h>

#include "GSystem.h"

namespace {

TEST(GSystem, IsNeitherMacOSNorWindows) {
  EXPECT_EQ(GSystem::OSGetSystem(), 3u);
  for (int call = 0; call < 2; ++call) {
    EXPECT_FALSE(GSystem::IsMacOSX());
    EXPECT_FALSE(GSystem::IsWindows());
  }
}

}  // namespace
