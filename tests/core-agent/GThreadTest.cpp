#include "GThread.h"

#include <gtest/gtest.h>

#include <thread>

#include "GSystem.h"
#include "PosixFakes.h"

namespace {

TEST(GThread, NoThreadEqualsOnlyNoThread) {
  void* const self = GThread::GetCurrentThread();
  void* other = nullptr;
  std::thread([&] { other = GThread::GetCurrentThread(); }).join();
  EXPECT_TRUE(GThread::AreThreadsEqual(self, GThread::GetCurrentThread()));
  EXPECT_FALSE(GThread::AreThreadsEqual(self, other));
  EXPECT_FALSE(GThread::AreThreadsEqual(nullptr, self));
  EXPECT_FALSE(GThread::AreThreadsEqual(self, nullptr));
  EXPECT_TRUE(GThread::AreThreadsEqual(nullptr, nullptr));
}

TEST(GSystem, SleepsAreCountedInMicrosecondsOf32Bits) {
  GSystem::OSSleep(4294967);
  GSystem::OSSleep(4294968);
  EXPECT_EQ(posixFakes.sleeps, (std::vector<unsigned int>{4294967000, 704}));
}

}  // namespace
