#include "VirtualTime.h"

#include <dlfcn.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <map>
#include <vector>

#include "TextFile.h"

#define EXPORTED extern "C" [[gnu::visibility("default")]]

namespace {

int64_t now = host::kSessionStart;

// Asks the C library's own, which needs no system call.
int RealClock(clockid_t clock, timespec* result) {
  static const auto own =
      reinterpret_cast<decltype(&clock_gettime)>(dlsym(RTLD_NEXT, "clock_gettime"));
  return own(clock, result);
}

timespec RealTime() {
  timespec time{};
  RealClock(CLOCK_REALTIME, &time);
  return time;
}

// Moves a deadline from the virtual to the real clock. One of a clock that goes on, such as the
// time since the system started, is far before every session.
timespec RealDeadline(timespec deadline) {
  constexpr int64_t kYear = 31'536'000;
  if (deadline.tv_sec < host::kSessionStart - kYear) return deadline;
  const timespec real = RealTime();
  constexpr long kSecond = 1'000'000'000;
  const long nanoseconds = deadline.tv_nsec + real.tv_nsec;
  return {deadline.tv_sec + real.tv_sec - now + nanoseconds / kSecond, nanoseconds % kSecond};
}

// Waits by the C library's function of that name. A wait until a time of the clocks that stand
// still takes as long as it would if they went on.
template <typename... Objects>
int Wait(const char* name, const timespec& deadline, Objects*... objects) {
  using Function = int (*)(Objects * ..., const timespec*);
  static const auto wait = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
  const timespec real = RealDeadline(deadline);
  return wait(objects..., &real);
}

// Events of the kernel about the folders that are watched.
int events = -1;
std::map<int, std::filesystem::path> folders;
// Instances of processes that have ended.
std::vector<int> unusedWatches;

// Corrects the date of the file, or of those in the folder, which is watched from now on. A date
// far from the real time isn't the kernel's, but was set.
void CorrectDates(const std::filesystem::path& path) {
  constexpr time_t kHour = 3600;
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return;
  if (S_ISDIR(status.st_mode)) {
    const int watch = inotify_add_watch(events, path.c_str(), IN_CREATE | IN_MODIFY | IN_MOVED_TO);
    if (watch >= 0) folders[watch] = path;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(path, ignored)) {
      CorrectDates(entry.path());
    }
  } else if (std::abs(RealTime().tv_sec - status.st_mtim.tv_sec) < kHour) {
    host::SetModificationDate(path, now);
  }
}

}  // namespace

EXPORTED time_t time(time_t* result) noexcept {
  if (result) *result = now;
  return now;
}

EXPORTED int gettimeofday(timeval* __restrict result, void* __restrict /*zone*/) noexcept {
  // The C library declares it as never null, but answers 0 for null.
  timeval* volatile place = result;
  if (place) *place = {now, 0};
  return 0;
}

EXPORTED int clock_gettime(clockid_t clock, timespec* result) noexcept {
  if (clock != CLOCK_REALTIME && clock != CLOCK_REALTIME_COARSE && clock != CLOCK_REALTIME_ALARM &&
      clock != CLOCK_TAI) {
    return RealClock(clock, result);
  }
  *result = {now, 0};
  return 0;
}

EXPORTED int timespec_get(timespec* result, int base) noexcept {
  if (base != TIME_UTC) return 0;
  *result = {now, 0};
  return base;
}

EXPORTED int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                    const timespec* deadline) {
  return Wait("pthread_cond_timedwait", *deadline, condition, mutex);
}

EXPORTED int pthread_mutex_timedlock(pthread_mutex_t* mutex, const timespec* deadline) noexcept {
  return Wait("pthread_mutex_timedlock", *deadline, mutex);
}

EXPORTED int sem_timedwait(sem_t* semaphore, const timespec* deadline) {
  return Wait("sem_timedwait", *deadline, semaphore);
}

namespace host {

int64_t VirtualNow() {
  return now;
}

void AdvanceVirtualTime(int64_t seconds) {
  now += seconds;
}

int TakeWatch() {
  if (unusedWatches.empty()) return events = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  events = unusedWatches.back();
  unusedWatches.pop_back();
  return events;
}

void GiveBackWatch(int watch) {
  if (watch >= 0) unusedWatches.push_back(watch);
}

void WatchFileDates(const std::filesystem::path& folder) {
  // Of the process that had the instance before.
  for (std::array<char, 4096> old{}; read(events, old.data(), old.size()) > 0;) continue;
  CorrectDates(folder);
}

bool UpdateFileDates() {
  alignas(inotify_event) std::array<char, 4096> buffer;
  bool hasNew = events < 0;
  for (ssize_t size = 0; (size = read(events, buffer.data(), buffer.size())) > 0;) {
    hasNew = true;
    for (const char* place = buffer.data(); place < buffer.data() + size;) {
      const auto* const event = reinterpret_cast<const inotify_event*>(place);
      place += sizeof(inotify_event) + event->len;
      if (event->len > 0) CorrectDates(folders[event->wd] / event->name);
    }
  }
  return hasNew;
}

}  // namespace host
