#include "GMutex.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <thread>

#include "CoreErrorCodes.h"
#include "GUtils.h"
#include "PosixFakes.h"

bool operator==(const timespec& left, const timespec& right) {
  return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

namespace {

using testing::ElementsAre;

constexpr uint32_t kDeadlock = 0x0100100B;
constexpr uint32_t kBusy = 0x0100100C;

template <typename Operation>
uint32_t OnAnotherThread(Operation operation) {
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
  using Event = uint32_t (*)(GMutex&);
  const Event lock = [](GMutex& mutex) { return mutex.Lock(); };
  const Event tryLock = [](GMutex& mutex) { return mutex.TryLock(); };
  const Event timedLock = [](GMutex& mutex) { return mutex.TryLockWithTimeout(5); };
  const Event noWait = [](GMutex& mutex) { return mutex.TryLockWithTimeout(0); };
  const Event noLimit = [](GMutex& mutex) { return mutex.TryLockWithTimeout(0xFFFFFFFF); };
  const Event unlock = [](GMutex& mutex) { return mutex.Unlock(); };
  const Event strangersUnlock = [](GMutex& mutex) {
    return OnAnotherThread([&] { return mutex.Unlock(); });
  };
  const struct {
    const char* name;
    State before;
    Event event;
    uint32_t answer;
    State after;
  } rows[] = {
      {"lock, free", kFree, lock, 0, kOurs},
      {"try, free", kFree, tryLock, 0, kOurs},
      {"timed, free", kFree, timedLock, 0, kOurs},
      {"no limit, free", kFree, noLimit, 0, kOurs},
      {"lock, owner", kOurs, lock, kDeadlock, kOurs},
      {"try, owner", kOurs, tryLock, kDeadlock, kOurs},
      {"timed, owner", kOurs, timedLock, kDeadlock, kOurs},
      {"no limit, owner", kOurs, noLimit, kDeadlock, kOurs},
      {"try, another's", kTheirs, tryLock, kBusy, kTheirs},
      {"no wait, another's", kTheirs, noWait, kBusy, kTheirs},
      {"timed, another's", kTheirs, timedLock, kBusy, kTheirs},
      {"unlock, owner", kOurs, unlock, 0, kFree},
      {"unlock, another's", kTheirs, unlock, kDeadlock, kTheirs},
      {"unlock by a stranger", kOurs, strangersUnlock, kDeadlock, kOurs},
      {"unlock, free", kFree, unlock, kDeadlock, kFree},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    GMutex mutex;
    if (row.before == kOurs) mutex.Lock();
    if (row.before == kTheirs) OnAnotherThread([&] { return mutex.Lock(); });
    EXPECT_EQ(row.event(mutex), row.answer);
    EXPECT_EQ(StateOf(mutex), row.after);
  }
  EXPECT_EQ(posixFakes.timedWaitDeadlines.size(), 1u) << "only one of the rows waits";
}

TEST(GMutex, ARefusedSecondLockDoesNotCount) {
  GMutex mutex;
  mutex.Lock();
  mutex.Lock();
  EXPECT_EQ(mutex.Unlock(), 0u);
  EXPECT_EQ(OnAnotherThread([&] { return mutex.TryLock(); }), 0u);
}

TEST(GMutex, ATimedAcquireWaitsForOneDeadlineThroughSpuriousWakeUps) {
  GMutex mutex;
  OnAnotherThread([&] { return mutex.Lock(); });
  posixFakes.now = {1000, 700000};
  posixFakes.timedWaitResults = {0, 0, ETIMEDOUT};
  EXPECT_EQ(mutex.TryLockWithTimeout(1500), kBusy);
  const timespec deadline = {1002, 200000000};
  EXPECT_THAT(posixFakes.timedWaitDeadlines, ElementsAre(deadline, deadline, deadline));
}

TEST(GMutex, ResultsOfThePlatformBecomeCodes) {
  const std::pair<int, uint32_t> rows[] = {{EDEADLK, kDeadlock},
                                           {EINVAL, GMutex::kMutexInvalidErr},
                                           {ETIMEDOUT, kBusy},
                                           {EPERM, CoreErrorCodes::kError}};
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
  } rows[] = {{{10, 700000}, 1500, {12, 200000000}}, {{10, 700000}, 300, {11, 0}},
              {{10, 0}, 999, {10, 999000000}},       {{10, 999999}, 0, {10, 999999000}},
              {{10, 999999}, 999, {11, 998999000}},  {{10, 1}, 0xFFFFFFFE, {4294977, 294001000}}};
  for (const auto& row : rows) {
    posixFakes.now = row.now;
    timespec deadline;
    GUtils::FutureMillisecondsToAbsTime(row.milliseconds, deadline);
    EXPECT_TRUE(deadline == row.deadline)
        << row.milliseconds << ": " << deadline.tv_sec << ", " << deadline.tv_nsec;
  }
}

}  // namespace
