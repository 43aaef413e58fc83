#include "GMutex.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <functional>
#include <latch>
#include <thread>

#include "GUtils.h"
#include "PosixFakes.h"

namespace {

constexpr uint32_t kDeadlock = 0x0100100B;
constexpr uint32_t kBusy = 0x0100100C;

using Operation = std::function<uint32_t(GMutex&)>;
const Operation kLock = &GMutex::Lock, kTryLock = &GMutex::TryLock, kUnlock = &GMutex::Unlock;

Operation Timed(unsigned int limit) {
  return [limit](GMutex& mutex) { return mutex.TryLockWithTimeout(limit); };
}

uint32_t OnAnotherThread(GMutex& mutex, const Operation& operation) {
  uint32_t code = 0;
  std::thread([&] { code = operation(mutex); }).join();
  return code;
}

enum State { kFree, kOurs, kTheirs };

State StateOf(GMutex& mutex) {
  const uint32_t code = mutex.TryLock();
  if (code == 0) mutex.Unlock();
  return code == 0 ? kFree : code == kDeadlock ? kOurs : kTheirs;
}

TEST(GMutex, OnlyTheOwnerUnlocksAndOnlyAFreeMutexIsTaken) {
  const Operation strangersUnlock = [](GMutex& mutex) { return OnAnotherThread(mutex, kUnlock); };
  const struct {
    const char* name;
    State before;
    Operation event;
    uint32_t answer;
    State after;
  } rows[] = {{"lock, free", kFree, kLock, 0, kOurs},
              {"try, free", kFree, kTryLock, 0, kOurs},
              {"timed, free", kFree, Timed(5), 0, kOurs},
              {"without a limit, free", kFree, Timed(0xFFFFFFFF), 0, kOurs},
              {"unlock, free", kFree, kUnlock, kDeadlock, kFree},
              {"lock, ours", kOurs, kLock, kDeadlock, kOurs},
              {"try, ours", kOurs, kTryLock, kDeadlock, kOurs},
              {"timed, ours", kOurs, Timed(5), kDeadlock, kOurs},
              {"without a limit, ours", kOurs, Timed(0xFFFFFFFF), kDeadlock, kOurs},
              {"a stranger's unlock, ours", kOurs, strangersUnlock, kDeadlock, kOurs},
              {"unlock, ours", kOurs, kUnlock, 0, kFree},
              {"try, theirs", kTheirs, kTryLock, kBusy, kTheirs},
              {"timed by 0, theirs", kTheirs, Timed(0), kBusy, kTheirs},
              {"timed, theirs", kTheirs, Timed(5), kBusy, kTheirs},
              {"unlock, theirs", kTheirs, kUnlock, kDeadlock, kTheirs}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    GMutex mutex;
    if (row.before == kOurs) mutex.Lock();
    if (row.before == kTheirs) OnAnotherThread(mutex, kLock);
    EXPECT_EQ(row.event(mutex), row.answer);
    EXPECT_EQ(StateOf(mutex), row.after);
    // A refused second lock doesn't count.
    mutex.Unlock();
    EXPECT_EQ(StateOf(mutex), row.after == kTheirs ? kTheirs : kFree);
  }
}

class AHeldGMutex : public testing::Test {
 protected:
  AHeldGMutex() { OnAnotherThread(mutex, kLock); }

  GMutex mutex;
};

TEST_F(AHeldGMutex, IsAwaitedUntilOneDeadlineThroughSpuriousWakeUps) {
  posixFakes.now = {1000, 700000};
  posixFakes.waitResults = {0, 0, ETIMEDOUT};
  EXPECT_EQ(mutex.TryLockWithTimeout(1500), kBusy);
  ASSERT_EQ(posixFakes.timedWaitDeadlines.size(), 3u);
  for (const timespec& deadline : posixFakes.timedWaitDeadlines) {
    EXPECT_EQ(std::pair(deadline.tv_sec, deadline.tv_nsec), std::pair(1002L, 200000000L));
  }
}

TEST_F(AHeldGMutex, TurnsResultsOfThePlatformIntoCodes) {
  const std::pair<int, uint32_t> rows[] = {
      {EDEADLK, kDeadlock}, {EINVAL, 0x0200100B}, {ETIMEDOUT, kBusy}, {EPERM, 0x01000000}};
  for (const auto& [result, code] : rows) {
    posixFakes.waitResults = {result, 0, result};
    EXPECT_EQ(mutex.TryLockWithTimeout(1), code) << result;
    EXPECT_EQ(mutex.Lock(), code) << result << " after a spurious wake-up";
    EXPECT_EQ(StateOf(mutex), kTheirs) << result;
  }
}

TEST(GMutex, IsLeftFreeIfItBecomesSoOnlyWhenTheTimeIsUp) {
  GMutex mutex;
  std::latch held(1), timeIsUp(1);
  std::thread holder([&] {
    mutex.Lock();
    held.count_down();
    timeIsUp.wait();
    mutex.Unlock();
  });
  held.wait();
  posixFakes.duringWait = [&] {
    timeIsUp.count_down();
    holder.join();
  };
  EXPECT_EQ(mutex.TryLockWithTimeout(5), kBusy);
  EXPECT_EQ(StateOf(mutex), kFree);
}

TEST(GMutexDeathTest, AMutexThatCantBeMadeOrDestroyedEndsTheProcess) {
  for (const char* function : {"pthread_mutex_init", "pthread_cond_init", "pthread_mutex_destroy",
                               "pthread_cond_destroy"}) {
    SCOPED_TRACE(function);
    const auto makeAndDestroy = [&] {
      posixFakes.failing = function;
      GMutex();
    };
    EXPECT_DEATH(makeAndDestroy(), "result == 0");
  }
}

TEST(GUtils, ADeadlineCarriesIntoTheSeconds) {
  const struct {
    timeval now;
    unsigned int milliseconds;
    timespec deadline;
  } rows[] = {{{10, 700000}, 1500, {12, 200000000}},
              {{10, 700000}, 300, {11, 0}},
              {{10, 999999}, 999, {11, 998999000}},
              {{10, 1}, 0xFFFFFFFE, {4294977, 294001000}}};
  for (const auto& row : rows) {
    posixFakes.now = row.now;
    timespec deadline;
    GUtils::FutureMillisecondsToAbsTime(row.milliseconds, deadline);
    EXPECT_EQ(deadline.tv_sec, row.deadline.tv_sec) << row.milliseconds;
    EXPECT_EQ(deadline.tv_nsec, row.deadline.tv_nsec) << row.milliseconds;
  }
}

}  // namespace
