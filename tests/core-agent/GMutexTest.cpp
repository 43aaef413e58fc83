#include "GMutex.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <functional>
#include <thread>

#include "GUtils.h"
#include "PosixFakes.h"

namespace {

constexpr uint32_t kDeadlock = 0x0100100B;
constexpr uint32_t kBusy = 0x0100100C;

uint32_t OnAnotherThread(const std::function<uint32_t()>& operation) {
  uint32_t code = 0;
  std::thread([&] { code = operation(); }).join();
  return code;
}

enum State { kFree, kOurs, kTheirs };

State StateOf(GMutex& mutex) {
  const uint32_t code = mutex.TryLock();
  if (code == 0) mutex.Unlock();
  return code == 0 ? kFree : code == kDeadlock ? kOurs : kTheirs;
}

TEST(GMutex, KeepsItsTableOfStates) {
  using Event = std::function<uint32_t(GMutex&)>;
  const Event lock = &GMutex::Lock, tryLock = &GMutex::TryLock, unlock = &GMutex::Unlock;
  const auto timed = [](unsigned int limit) -> Event {
    return [limit](GMutex& mutex) { return mutex.TryLockWithTimeout(limit); };
  };
  const Event strangersUnlock = [&](GMutex& mutex) {
    return OnAnotherThread([&] { return mutex.Unlock(); });
  };
  const struct {
    State before;
    std::vector<Event> events;
    uint32_t answer;
    State after;
  } rows[] = {
      {kFree, {lock, tryLock, timed(5), timed(0xFFFFFFFF)}, 0, kOurs},
      {kFree, {unlock}, kDeadlock, kFree},
      {kOurs, {lock, tryLock, timed(5), timed(0xFFFFFFFF), strangersUnlock}, kDeadlock, kOurs},
      {kOurs, {unlock}, 0, kFree},
      {kTheirs, {tryLock, timed(0), timed(5)}, kBusy, kTheirs},
      {kTheirs, {unlock}, kDeadlock, kTheirs}};
  for (const auto& row : rows) {
    for (const Event& event : row.events) {
      SCOPED_TRACE(testing::Message() << &row - rows << ", " << &event - row.events.data());
      GMutex mutex;
      if (row.before == kOurs) mutex.Lock();
      if (row.before == kTheirs) OnAnotherThread([&] { return mutex.Lock(); });
      EXPECT_EQ(event(mutex), row.answer);
      EXPECT_EQ(StateOf(mutex), row.after);
      // A refused second lock doesn't count.
      mutex.Unlock();
      EXPECT_EQ(StateOf(mutex), row.after == kTheirs ? kTheirs : kFree);
    }
  }
  EXPECT_EQ(posixFakes.timedWaitDeadlines.size(), 1u) << "only one of the events waits";
}

TEST(GMutex, ATimedAcquireWaitsForOneDeadlineThroughSpuriousWakeUps) {
  GMutex mutex;
  OnAnotherThread([&] { return mutex.Lock(); });
  posixFakes.now = {1000, 700000};
  posixFakes.timedWaitResults = {0, 0, ETIMEDOUT};
  EXPECT_EQ(mutex.TryLockWithTimeout(1500), kBusy);
  ASSERT_EQ(posixFakes.timedWaitDeadlines.size(), 3u);
  for (const timespec& deadline : posixFakes.timedWaitDeadlines) {
    EXPECT_EQ(std::pair(deadline.tv_sec, deadline.tv_nsec), std::pair(1002L, 200000000L));
  }
}

TEST(GMutex, ResultsOfThePlatformBecomeCodes) {
  const std::pair<int, uint32_t> rows[] = {
      {EDEADLK, kDeadlock}, {EINVAL, 0x0200100B}, {ETIMEDOUT, kBusy}, {EPERM, 0x01000000}};
  GMutex mutex;
  OnAnotherThread([&] { return mutex.Lock(); });
  for (const auto& [result, code] : rows) {
    posixFakes.timedWaitResults = {result};
    EXPECT_EQ(mutex.TryLockWithTimeout(1), code) << result;
  }
}

TEST(GMutexDeathTest, AMutexThatCantBeMadeEndsTheProcess) {
  posixFakes.conditionInitResult = EAGAIN;
  EXPECT_DEATH(GMutex(), "result == 0");
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
