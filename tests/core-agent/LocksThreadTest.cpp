#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

#include "CppCoreMacros.h"
#include "GLogger.h"
#include "GMutex.h"
#include "GScopedLock.h"
#include "GSingleton.h"

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

// Alternates long and short texts, so that a mixture of two shows.
std::string Text(int number, int round) {
  return std::to_string(number) + ": " +
         std::string(static_cast<size_t>(round % 7 * 60), static_cast<char>('a' + number)) +
         std::to_string(round);
}

std::array<int, kThreads> lines{};
int faults = 0;

// Counts the lines of each thread, and those that are damaged, out of order or overlap another.
struct CountingAppender : GLogAppender {
  void Append(const std::string& line) override {
    const bool overlaps = mInside.exchange(true);
    const std::string text = line.substr(line.find("\t[threads]\t[Error]\t") + 19);
    const int number = text.at(0) - '0';
    const int round = lines.at(static_cast<size_t>(number))++;
    if (overlaps || text != Text(number, round) + "\n") ++faults;
    mInside = false;
  }
  std::atomic<bool> mInside = false;
};

TEST(LocksThreads, EightThreadsLogLockTimeOutAndLookUpNamesAtOnce) {
  constexpr int kRounds = 400;
  GMutex shared, heldThroughout;
  heldThroughout.Lock();
  int guarded = 0;
  std::atomic<int> timeouts = 0, names = 0;
  GLogger logger;
  logger.AddAppender("test", std::make_unique<CountingAppender>());
  RunOnEightThreads([&](int number) {
    for (int round = 0; round < kRounds; ++round) {
      names += GetNameForErrorCode(CoreErrorCodes::kError) == "CoreErrorCodes::kError";
      logger.LogError("threads", "%s", Text(number, round).c_str());
      const GScopedLock lock(shared);
      if (lock.IsLocked()) ++guarded;
      if (round % 50 == number)
        timeouts += heldThroughout.TryLockWithTimeout(2) == GLockable::kLockBusyErr;
    }
  });
  EXPECT_THAT(lines, testing::Each(kRounds));
  EXPECT_EQ(faults, 0);
  EXPECT_EQ(guarded, kThreads * kRounds);
  EXPECT_EQ(timeouts, kThreads * kRounds / 50);
  EXPECT_EQ(names, kThreads * kRounds);
}

// Two threads walk round a ring of three locks, each taking the next before it gives up the last.
// Neither can overtake, so each waits for the other's release. A lost wake-up stops both for good,
// or until the limit of a timed acquire.
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
  };
  std::array<Counted*, kThreads> instances;
  RunOnEightThreads([&](int number) {
    instances[static_cast<size_t>(number)] = GSingleton<Counted>::GetSharedInstance();
  });
  EXPECT_EQ(made, 1);
  EXPECT_THAT(instances, testing::Each(instances[0]));
}

}  // namespace
