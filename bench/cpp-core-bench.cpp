#include <benchmark/benchmark.h>

#include <atomic>
#include <mutex>
#include <thread>

#include "CppCoreMacros.h"
#include "GBlockingLockStrategy.h"
#include "GDateTime.h"
#include "GLogger.h"
#include "GMutex.h"
#include "GScopedLock.h"

namespace {

/// A second thread that only waits. While there is none, a standard mutex may skip its atomics.
class IdleThread {
 public:
  ~IdleThread() {
    mDone = true;
    mDone.notify_one();
    mThread.join();
  }

 private:
  std::atomic<bool> mDone = false;
  std::thread mThread{[this] { mDone.wait(false); }};
};

void StdMutexLockAndUnlock(benchmark::State& state) {
  const IdleThread other;
  std::mutex mutex;
  for ([[maybe_unused]] auto _ : state) {
    mutex.lock();
    benchmark::ClobberMemory();
    mutex.unlock();
  }
}
BENCHMARK(StdMutexLockAndUnlock);

void GMutexLockAndUnlock(benchmark::State& state) {
  const IdleThread other;
  GMutex mutex;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(mutex.Lock());
    benchmark::DoNotOptimize(mutex.Unlock());
  }
}
BENCHMARK(GMutexLockAndUnlock);

void GScopedLockOnAGMutex(benchmark::State& state) {
  const IdleThread other;
  GMutex mutex;
  for ([[maybe_unused]] auto _ : state) {
    const GScopedLock lock(mutex, true, new GBlockingLockStrategy);
    benchmark::DoNotOptimize(lock.IsLocked());
  }
}
BENCHMARK(GScopedLockOnAGMutex);

void NameLookup(benchmark::State& state) {
  uint32_t code = 0x0C001005;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(code);
    benchmark::DoNotOptimize(GetNameForErrorCode(code));
  }
}
BENCHMARK(NameLookup);

void Iso8601Text(benchmark::State& state) {
  const GDateTime time = GDateTime::kMaxDateTime;
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(time.GetAsISO8601String(true));
}
BENCHMARK(Iso8601Text);

void ThresholdLookup(benchmark::State& state) {
  GLogger logger;
  const std::string identifier = "FileSystem";
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(logger.ShouldLog(identifier, GLogger::kLoggingLevelError));
  }
}
BENCHMARK(ThresholdLookup);

void LogOneEntry(benchmark::State& state, GLogger& logger, GLogger::LoggingLevel level) {
  const std::string identifier = "FileSystem";
  const std::string format = "Error='%s'  File='%s'  Line=%d  Code='%u'  ";
  for ([[maybe_unused]] auto _ : state) {
    logger.Log(identifier, level, format, "CoreErrorCodes::kError", __FILE__, __LINE__, 7u);
  }
}

void LogUnderTheThreshold(benchmark::State& state) {
  GLogger logger;
  LogOneEntry(state, logger, GLogger::kLoggingLevelDebug);
}
BENCHMARK(LogUnderTheThreshold);

void LogWithoutAppender(benchmark::State& state) {
  GLogger logger;
  LogOneEntry(state, logger, GLogger::kLoggingLevelError);
}
BENCHMARK(LogWithoutAppender);

void LogToAnAppenderThatDropsTheLine(benchmark::State& state) {
  struct Dropping : GLogAppender {
    void Append(const std::string& line) override { benchmark::DoNotOptimize(line.data()); }
  };
  GLogger logger;
  logger.AddAppender("dropping", std::make_unique<Dropping>());
  LogOneEntry(state, logger, GLogger::kLoggingLevelError);
}
BENCHMARK(LogToAnAppenderThatDropsTheLine);

}  // namespace
