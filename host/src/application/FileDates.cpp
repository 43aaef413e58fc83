#include "FileDates.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>

#include "TextFile.h"
#include "VirtualTime.h"

namespace host {

namespace fs = std::filesystem;

namespace {

// A folder's files that were written before it was watched.
void SetDatesBelow(const fs::path& folder) {
  std::error_code ignored;
  for (fs::recursive_directory_iterator entry(folder, ignored), end; entry != end;
       entry.increment(ignored)) {
    if (entry->is_regular_file(ignored) && !entry->is_symlink(ignored)) {
      TrySetModificationDate(entry->path(), VirtualNow());
    }
  }
}

}  // namespace

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
        if (event->mask & IN_CREATE) SetDatesBelow(path);
      } else {
        TrySetModificationDate(path, VirtualNow());
      }
    }
  }
}

}  // namespace host
