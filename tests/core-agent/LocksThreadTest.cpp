#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <string_view>
#include <thread>
#include <vector>

#include "CoreErrorCodes.h"
#include "GLogger.h"
#include "GMutex.h"
#include "GScopedLock.h"
#include "GSingleton.h"
#include "GetNameForErrorCode.h"

namespace {

constexpr int kThreads = 8;

template <typename Work>
void RunOnEightThreads(Work work) {
  std::atomic<int> waiting = kThreads;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      for (--waiting; waiting > 0;) std::this_thread::yield();
      work(number);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// Counts the lines of each thread, and those that came in a wrong shape, order or company.
class CountingAppender : public GLogAppender {
 public:
  struct Counts {
    std::array<int, kThreads> next{};
    int faults = 0;
  };

  explicit CountingAppender(Counts& counts) : mCounts(counts) {}

  void Append(const std::string& line) override {
    if (mInside.exchange(true)) ++mCounts.faults;
    const size_t start = line.find(kPrefix);
    const auto number = static_cast<size_t>(line.at(start + kPrefix.size()) - '0');
    int& next = mCounts.next.at(number);
    if (line.substr(start) != Text(static_cast<int>(number), next)) ++mCounts.faults;
    ++next;
    mInside = false;
  }

  // Long and short lines in turn, so that a mixture of two would show.
  static std::string Text(int number, int line) {
    return std::string(kPrefix) + std::to_string(number) + ": " +
           std::string(static_cast<size_t>(line % 7 * 60), static_cast<char>('a' + number)) + " " +
           std::to_string(line) + "\n";
  }

 private:
  static constexpr std::string_view kPrefix = "\t[threads]\t[Error]\t";

  Counts& mCounts;
  std::atomic<bool> mInside = false;
};

TEST(GLoggerThreads, LinesComeOutWholeAndOneAtATime) {
  constexpr int kLines = 500;
  GLogger logger;
  CountingAppender::Counts counts;
  logger.AddAppender("test", std::make_unique<CountingAppender>(counts));
  RunOnEightThreads([&](int number) {
    for (int line = 0; line < kLines; ++line) {
      const std::string filler(static_cast<size_t>(line % 7 * 60), static_cast<char>('a' + number));
      logger.LogError("threads", "%d: %s %d", number, filler.c_str(), line);
    }
  });
  EXPECT_THAT(counts.next, testing::Each(kLines));
  EXPECT_EQ(counts.faults, 0);
}

TEST(LocksThreads, EightThreadsLogLockTimeOutAndLookUpNamesAtOnce) {
  constexpr int kRounds = 200;
  GMutex shared;
  GMutex heldThroughout;
  heldThroughout.Lock();
  std::atomic<int> lines = 0;
  struct Counter : GLogAppender {
    explicit Counter(std::atomic<int>& lines) : mLines(lines) {}
    void Append(const std::string&) override { ++mLines; }
    std::atomic<int>& mLines;
  };
  GLogger::GetSharedInstance()->AddAppender("test", std::make_unique<Counter>(lines));

  int guarded = 0;
  std::atomic<int> timeouts = 0;
  std::atomic<int> names = 0;
  RunOnEightThreads([&](int number) {
    for (int round = 0; round < kRounds; ++round) {
      names += GetNameForErrorCode(CoreErrorCodes::kError) == "CoreErrorCodes::kError";
      const GScopedLock lock(shared, true, new GBlockingLockStrategy);
      if (lock.IsLocked()) ++guarded;
      if (round % 50 == number)
        timeouts += heldThroughout.TryLockWithTimeout(2) == GLockable::kLockBusyErr;
      GLogger::GetSharedInstance()->LogError("threads", "%d", round);
    }
  });
  EXPECT_EQ(guarded, kThreads * kRounds);
  EXPECT_EQ(timeouts, kThreads * kRounds / 50);
  EXPECT_EQ(names, kThreads * kRounds);
  EXPECT_EQ(lines, kThreads * kRounds);
  heldThroughout.Unlock();
}

// Two threads walk round a ring of three locks, each taking the next before it gives up the last.
// Neither can overtake, so every lock comes from the other's hands: a lost wake-up would stop both
// for good, or until the limit of the acquires that have one.
TEST(GMutexThreads, NoWakeUpIsLostInAHundredThousandHandOvers) {
  constexpr size_t kSteps = 50000;
  constexpr unsigned int kLimit = 30000;
  std::array<GMutex, 3> ring;
  std::atomic<int> absent = 2;
  std::atomic<uint32_t> errors = 0;
  const auto walk = [&](size_t start) {
    errors |= ring[start].Lock();
    for (--absent; absent > 0;) std::this_thread::yield();
    for (size_t held = start; held < start + kSteps; ++held) {
      GMutex& next = ring[(held + 1) % 3];
      errors |= held % 2 == 0 ? next.Lock() : next.TryLockWithTimeout(kLimit);
      errors |= ring[held % 3].Unlock();
    }
    errors |= ring[(start + kSteps) % 3].Unlock();
  };
  std::thread leader(walk, 1);
  std::thread follower(walk, 0);
  leader.join();
  follower.join();
  EXPECT_EQ(errors, 0u);
}

TEST(GSingletonThreads, ThereIsOneInstanceHoweverManyAskFirst) {
  static std::atomic<int> made = 0;
  struct Counted {
    Counted() { ++made; }
    int value = 42;
  };
  std::array<Counted*, kThreads> instances;
  RunOnEightThreads([&](int number) {
    instances[static_cast<size_t>(number)] = GSingleton<Counted>::GetSharedInstance();
  });
  EXPECT_EQ(made, 1);
  EXPECT_THAT(instances, testing::Each(instances[0]));
  EXPECT_EQ(instances[0]->value, 42);
}

}  // namespace
