#include "GScopedLock.h"

#include <gmock/gmock.h>

#include "CoreErrorCodes.h"
#include "GMutex.h"
#include "LogLines.h"
#include "PosixFakes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Ref;
using testing::Return;
using testing::StrictMock;

class MockLockable : public GLockable {
 public:
  MOCK_METHOD(uint32_t, Lock, (), (override));
  MOCK_METHOD(uint32_t, TryLock, (), (override));
  MOCK_METHOD(uint32_t, Unlock, (), (override));
};

class MockStrategy : public GLockStrategy {
 public:
  MOCK_METHOD(uint32_t, Lock, (GLockable&), (override));
  MOCK_METHOD(uint32_t, Unlock, (GLockable&), (override));
};

// A mock that is never deleted fails the test program, so ownership needs no test of its own.
class GScopedLockTest : public testing::Test {
 protected:
  StrictMock<MockLockable> lockable;
  StrictMock<MockStrategy>* strategy = new StrictMock<MockStrategy>;
  const LogLines log;
};

TEST_F(GScopedLockTest, ASecondLockOrUnlockDoesNotReachTheStrategy) {
  EXPECT_CALL(*strategy, Lock(Ref(lockable))).WillOnce(Return(0));
  EXPECT_CALL(*strategy, Unlock(Ref(lockable))).WillOnce(Return(0));
  GScopedLock lock(lockable, false, strategy);
  EXPECT_FALSE(lock.IsLocked());
  EXPECT_TRUE(lock.Lock());
  EXPECT_TRUE(lock.Lock());
  lock.Unlock();
  EXPECT_FALSE(lock.IsLocked());
  lock.Unlock();
}

TEST_F(GScopedLockTest, AFailedLockLeavesALineAtDebugOnly) {
  EXPECT_CALL(*strategy, Lock).Times(2).WillRepeatedly(Return(GLockable::kLockBusyErr));
  GScopedLock lock(lockable, true, strategy);
  EXPECT_FALSE(lock.IsLocked());
  EXPECT_THAT(log.Entries(), IsEmpty());
  GLogger::GetSharedInstance()->SetLoggingLevelForIdentifier("Lockable",
                                                             GLogger::kLoggingLevelDebug);
  EXPECT_FALSE(lock.Lock());
  EXPECT_THAT(log.Entries(),
              ElementsAre(CheckEntry("Lockable", "GLockable::kLockBusyErr",
                                     "mLockStrategy->Lock(mLockable)", 0x0100100C, "Debug")));
}

TEST_F(GScopedLockTest, AFailedUnlockLeavesAnErrorAndTheLock) {
  EXPECT_CALL(*strategy, Lock).WillOnce(Return(0));
  EXPECT_CALL(*strategy, Unlock).Times(2).WillRepeatedly(Return(CoreErrorCodes::kError));
  GScopedLock lock(lockable, true, strategy);
  lock.Unlock();
  EXPECT_TRUE(lock.IsLocked());
  EXPECT_THAT(log.Entries(),
              ElementsAre(CheckEntry("Lockable", "CoreErrorCodes::kError",
                                     "mLockStrategy->Unlock(mLockable)", 0x01000000)));
}

TEST(GScopedLock, BlocksWithoutAStrategyAndCannotTakeWhatItsThreadHolds) {
  GMutex mutex;
  {
    const GScopedLock outer(mutex);
    EXPECT_FALSE(GScopedLock(mutex).IsLocked());
    EXPECT_EQ(mutex.TryLock(), GMutex::kMutexDeadlockErr) << "the outer lock is still held";
  }
  EXPECT_EQ(mutex.TryLock(), 0u);
}

TEST(GLockable, PollsUntilTheTimeIsUp) {
  constexpr uint32_t kHeld = GLockable::kLockBusyErr;
  const struct {
    unsigned int milliseconds;
    std::vector<uint32_t> attempts;
    std::vector<unsigned int> sleeps;
  } rows[] = {{0, {kHeld}, {}},           {120, {kHeld, kHeld, kHeld}, {50000, 50000, 20000}},
              {50, {kHeld}, {50000}},     {7, {kHeld}, {7000}},
              {120, {kHeld, 0}, {50000}}, {120, {CoreErrorCodes::kError}, {}}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.milliseconds << " ms, " << row.attempts.size()
                                    << " attempts, the last with " << row.attempts.back());
    posixFakes.sleeps.clear();
    StrictMock<MockLockable> lockable;
    testing::InSequence sequence;
    for (const uint32_t code : row.attempts) EXPECT_CALL(lockable, TryLock).WillOnce(Return(code));
    EXPECT_EQ(lockable.TryLockWithTimeout(row.milliseconds), row.attempts.back());
    EXPECT_EQ(posixFakes.sleeps, row.sleeps);
  }
}

}  // namespace
