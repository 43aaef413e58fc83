#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "AETypelark.h"
#include "AE_APISuiteHandlerManager.h"
#include "AllocationCount.h"
#include "BenchHost.h"
#include "GlobalState.h"
#include "TBKLoader.h"
#include "TemporaryFolder.h"

namespace {

constexpr int32_t kSteplessTick = 12;

// Loads the framework, and replaces two operations by ones that return at once. Opening a document
// activates one font.
TBKLoader* LoadFramework() {
  TBKLoader* loader = TBKLoader::GetThisSharedInstance(TAMBERLINK_FRAMEWORK);
  if (!loader) std::abort();
  loader->pfPluginIsEnabled = [](bool, bool* enabled) {
    *enabled = true;
    return uint32_t{0};
  };
  loader->pfHandleOpenExistingDocument = [](const char*, char*, uint64_t*, int32_t* count) {
    *count = 1;
    return uint32_t{0};
  };
  return loader;
}

void Tick() {
  IdleHook(nullptr, nullptr, nullptr);
}

// Opens a project and ends its activation.
void ReachUneventfulTicks() {
  LoadFramework();
  global_state.picaBasicSuite = bench_host::BasicSuite();
  global_state.lastProjectPath = bench_host::ProjectPath();
  Tick();
  global_state.endFontActivationProcess();
  Tick();
}

// The host calls, the file's date and the clock reads of a tick, with the path neither converted
// nor kept.
void UneventfulTickFloor(benchmark::State& state, bool japanese) {
  bench_host::UseJapanesePath(japanese);
  AE_APISuiteHandlerManager manager(bench_host::BasicSuite());
  const AEGP_ProjSuite6* projects = manager.suite_handler_ptr()->ProjSuite6();
  const AEGP_MemorySuite1* memory = manager.suite_handler_ptr()->MemorySuite1();
  for ([[maybe_unused]] auto _ : state) {
    AEGP_ProjectH project = nullptr;
    projects->AEGP_GetProjectByIndex(0, &project);
    AEGP_MemHandle path = nullptr;
    projects->AEGP_GetProjectPath(project, &path);
    void* start = nullptr;
    memory->AEGP_LockMemHandle(path, &start);
    benchmark::DoNotOptimize(start);
    memory->AEGP_UnlockMemHandle(path);
    memory->AEGP_FreeMemHandle(path);
    projects->AEGP_GetProjectByIndex(0, &project);
    A_Boolean dirty = 0;
    projects->AEGP_ProjectIsDirty(project, &dirty);
    benchmark::DoNotOptimize(dirty);
    struct stat status {};
    benchmark::DoNotOptimize(stat(bench_host::ProjectPath(), &status));
    benchmark::DoNotOptimize(time(nullptr));
    benchmark::DoNotOptimize(time(nullptr));
  }
}
BENCHMARK_CAPTURE(UneventfulTickFloor, ASCII, false);
BENCHMARK_CAPTURE(UneventfulTickFloor, Japanese, true);

void UneventfulTick(benchmark::State& state, bool japanese) {
  bench_host::UseJapanesePath(japanese);
  ReachUneventfulTicks();
  const int64_t allocations = allocation_count;
  const int64_t suites = bench_host::suites_acquired;
  for ([[maybe_unused]] auto _ : state) Tick();
  const auto ticks = static_cast<double>(state.iterations());
  state.counters["allocations"] = static_cast<double>(allocation_count - allocations) / ticks;
  state.counters["suites"] = static_cast<double>(bench_host::suites_acquired - suites) / ticks;
}
BENCHMARK_CAPTURE(UneventfulTick, ASCII, false);
BENCHMARK_CAPTURE(UneventfulTick, Japanese, true);

void TickOfARunningProcess(benchmark::State& state) {
  ReachUneventfulTicks();
  global_state.startFontActivationProcess();
  for ([[maybe_unused]] auto _ : state) {
    global_state.ticksSinceActivationStart = kSteplessTick;
    Tick();
  }
  global_state.endFontActivationProcess();
}
BENCHMARK(TickOfARunningProcess);

void WholeActivationProcess(benchmark::State& state) {
  ReachUneventfulTicks();
  for ([[maybe_unused]] auto _ : state) {
    global_state.startFontActivationProcess();
    while (global_state.fontActivationInProgress) Tick();
  }
}
BENCHMARK(WholeActivationProcess);

void SharedInstanceAfterTheFirstSuccess(benchmark::State& state) {
  LoadFramework();
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(TBKLoader::GetSharedInstance());
}
BENCHMARK(SharedInstanceAfterTheFirstSuccess);

// Searches the process list in vain, then reads the launch-info file and loads the framework that
// it names. The process has loaded the module already.
void SharedInstanceFirstCall(benchmark::State& state) {
  const TemporaryFolder home;
  setenv("HOME", home.path().c_str(), 1);
  home.Write("Library/Veldrane/com.veldrane.Oxbrim-LaunchInfo.conf",
             "oxbrim.path=" + (home.path() / "Oxbrim").string() + "\n");
  std::filesystem::create_directory(home.path() / "PluginFiles");
  std::filesystem::create_directory_symlink(TAMBERLINK_FRAMEWORK,
                                            home.path() / "PluginFiles/Tamberlink.framework");
  delete LoadFramework();
  for ([[maybe_unused]] auto _ : state) {
    const TBKLoader* loader = TBKLoader::GetSharedInstance();
    if (!loader) std::abort();
    delete loader;
  }
}
BENCHMARK(SharedInstanceFirstCall);

void SuiteAccessorAfterItsFirstCall(benchmark::State& state) {
  AEGP_SuiteHandler handler(bench_host::BasicSuite());
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(handler.ProjSuite6());
}
BENCHMARK(SuiteAccessorAfterItsFirstCall);

}  // namespace
