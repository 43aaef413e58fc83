#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace {

// Keeps the time of each benchmark's fastest repetition, the least disturbed one, and its counters.
class KeepingReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    std::vector<Run> medians;
    std::copy_if(runs.begin(), runs.end(), std::back_inserter(medians),
                 [](const Run& run) { return run.aggregate_name == "median"; });
    ConsoleReporter::ReportRuns(medians);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      const std::string name = run.run_name.function_name;
      const double time = run.GetAdjustedCPUTime();
      const auto [kept, isNew] = times.emplace(name, time);
      if (!isNew && time < kept->second) kept->second = time;
      for (const auto& [counter, value] : run.counters) {
        counters[std::string(name).append(".").append(counter)] = value.value;
      }
    }
  }

  std::map<std::string, double> times;
  std::map<std::string, double> counters;
};

// A value that wasn't measured is NAN, which is within no limit.
bool Within(const std::string& what, double value, double limit) {
  const bool within = value <= limit;
  std::printf("%-64s %6.2f, at most %.2f%s\n", what.c_str(), value, limit,
              within ? "" : "  EXCEEDED");
  return within;
}

bool RatioWithin(const KeepingReporter& reporter, const std::string& name, const std::string& base,
                 double limit) {
  const auto time = reporter.times.find(name);
  const auto floor = reporter.times.find(base);
  const bool measured = time != reporter.times.end() && floor != reporter.times.end();
  return Within(name + " / " + base, measured ? time->second / floor->second : NAN, limit);
}

bool CounterWithin(const KeepingReporter& reporter, const std::string& name, double limit) {
  const auto counter = reporter.counters.find(name);
  return Within(name, counter == reporter.counters.end() ? NAN : counter->second, limit);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  KeepingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n");
  bool within = RatioWithin(reporter, "UneventfulTick/ASCII", "UneventfulTickFloor/ASCII", 1.45);
  within &= RatioWithin(reporter, "UneventfulTick/Japanese", "UneventfulTickFloor/Japanese", 1.7);
  for (const std::string path : {"ASCII", "Japanese"}) {
    within &= CounterWithin(reporter, "UneventfulTick/" + path + ".allocations", 1);
    within &= CounterWithin(reporter, "UneventfulTick/" + path + ".suites", 0);
  }
  within &= RatioWithin(reporter, "GMutexLockAndUnlock", "StdMutexLockAndUnlock", 2.6);
  within &= RatioWithin(reporter, "GMutexLockAndUnlock", "AbslMutexLockAndUnlock", 1);
  within &=
      RatioWithin(reporter, "LogToAnAppenderThatDropsTheLine", "SpdlogToASinkThatDropsTheLine", 3);
  within &= RatioWithin(reporter, "LogWithoutAppender", "SpdlogToItsNullSink", 2.5);
  // The same work but for one call. The tenth allows for noise.
  within &= RatioWithin(reporter, "LogUnderTheThreshold", "ThresholdLookup", 1.1);
  return within ? 0 : 1;
}
