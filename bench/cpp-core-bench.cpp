#include <absl/synchronization/mutex.h>
#include <benchmark/benchmark.h>
#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/sinks/null_sink.h>

#include <atomic>
#include <mutex>
#include <thread>

#include "CppCoreMacros.h"
#include "GDateTime.h"
#include "GLogger.h"
#include "GMutex.h"
#include "GScopedLock.h"

namespace {

/// A second thread that only waits. With one thread, a standard mutex may skip its atomics.
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

void AbslMutexLockAndUnlock(benchmark::State& state) {
  const IdleThread other;
  absl::Mutex mutex;
  for ([[maybe_unused]] auto _ : state) {
    mutex.Lock();
    benchmark::ClobberMemory();
    mutex.Unlock();
  }
}
BENCHMARK(AbslMutexLockAndUnlock);

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
    const GScopedLock lock(mutex);
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

// The yardstick: an entry with the same fields.
void SpdlogOneEntry(benchmark::State& state, const spdlog::sink_ptr& sink) {
  spdlog::logger logger("FileSystem", sink);
  logger.set_formatter(std::make_unique<spdlog::pattern_formatter>(
      "[%Y-%m-%dT%H:%M:%S.%eZ]\t[%n]\t[%l]\t%v", spdlog::pattern_time_type::utc));
  for ([[maybe_unused]] auto _ : state) {
    logger.error("Error='{}'  File='{}'  Line={}  Code='{}'  ", "CoreErrorCodes::kError", __FILE__,
                 __LINE__, 7u);
  }
}

void SpdlogToItsNullSink(benchmark::State& state) {
  SpdlogOneEntry(state, std::make_shared<spdlog::sinks::null_sink_mt>());
}
BENCHMARK(SpdlogToItsNullSink);

void SpdlogToASinkThatDropsTheLine(benchmark::State& state) {
  struct Dropping : spdlog::sinks::base_sink<std::mutex> {
    void sink_it_(const spdlog::details::log_msg& entry) override {
      spdlog::memory_buf_t line;
      formatter_->format(entry, line);
      benchmark::DoNotOptimize(line.data());
    }
    void flush_() override {}
  };
  SpdlogOneEntry(state, std::make_shared<Dropping>());
}
BENCHMARK(SpdlogToASinkThatDropsTheLine);

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
