#include "FileDates.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <tuple>

#include "TextFile.h"
#include "VirtualTime.h"

namespace host {

namespace fs = std::filesystem;

namespace {

// Asks the kernel, since this program's own `clock_gettime` tells the virtual time.
timespec RealTime(clockid_t clock) {
  timespec time{};
  syscall(SYS_clock_gettime, clock, &time);
  return time;
}

bool IsBefore(const timespec& one, const timespec& other) {
  return std::tie(one.tv_sec, one.tv_nsec) < std::tie(other.tv_sec, other.tv_nsec);
}

}  // namespace

// The kernel takes dates from the coarse clock, which lags behind.
FileDates::FileDates() : mStart(RealTime(CLOCK_REALTIME_COARSE)) {}

FileDates::~FileDates() {
  if (mEvents >= 0) close(mEvents);
}

void FileDates::watch(const fs::path& folder) {
  if (mEvents < 0) mEvents = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  const int watched =
      inotify_add_watch(mEvents, folder.c_str(), IN_CREATE | IN_MODIFY | IN_MOVED_TO | IN_ONLYDIR);
  if (watched < 0) return;
  mFolders[watched] = folder;
  std::error_code ignored;
  for (fs::directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored)) {
    if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) watch(entry->path());
  }
}

void FileDates::setDate(const fs::path& file) const {
  struct stat status {};
  if (lstat(file.c_str(), &status) != 0 || IsBefore(status.st_mtim, mStart) ||
      IsBefore(RealTime(CLOCK_REALTIME), status.st_mtim)) {
    return;
  }
  TrySetModificationDate(file, VirtualNow());
}

// A folder's files that were written before it was watched.
void FileDates::setDatesBelow(const fs::path& folder) const {
  std::error_code ignored;
  for (fs::recursive_directory_iterator entry(folder, ignored), end; entry != end;
       entry.increment(ignored)) {
    if (entry->is_regular_file(ignored) && !entry->is_symlink(ignored)) setDate(entry->path());
  }
}

void FileDates::update() {
  alignas(inotify_event) std::array<char, 4096> buffer;
  for (ssize_t size = 0;
       mEvents >= 0 && (size = read(mEvents, buffer.data(), buffer.size())) > 0;) {
    for (const char* place = buffer.data(); place < buffer.data() + size;) {
      const auto* const event = reinterpret_cast<const inotify_event*>(place);
      place += sizeof(inotify_event) + event->len;
      const auto folder = mFolders.find(event->wd);
      if (folder == mFolders.end() || event->len == 0) continue;
      const fs::path path = folder->second / event->name;
      if (event->mask & IN_ISDIR) {
        watch(path);
        if (event->mask & IN_CREATE) setDatesBelow(path);
      } else {
        setDate(path);
      }
    }
  }
}

}  // namespace host
