#include "Usage.h"

#include <fmt/format.h>
#include <malloc.h>

#include <filesystem>
#include <iterator>

namespace host {
namespace {

// Freed blocks that the allocator keeps at hand count as in use. They came to 2 KB.
constexpr int64_t kLittleMemory = 16'384;

template <typename Iterator>
int64_t CountEntries(const std::filesystem::path& folder) {
  return std::distance(Iterator(folder), Iterator());
}

void Compare(std::string& lines, const char* what, int64_t before, int64_t now, int64_t allowed) {
  if (now <= before + allowed) return;
  lines += fmt::format("{}    {}: {} before, {} now", lines.empty() ? "" : "\n", what, before, now);
}

}  // namespace

Usage MeasureUsage(Host& host) {
  using std::filesystem::directory_iterator;
  using std::filesystem::recursive_directory_iterator;
  // Large blocks lie outside of the heap.
  const struct mallinfo2 heap = mallinfo2();
  return {static_cast<int64_t>(heap.uordblks + heap.hblkhd - host.memory.bytesKept()),
          CountEntries<directory_iterator>("/proc/self/fd"),
          CountEntries<recursive_directory_iterator>(host.folder()),
          static_cast<int64_t>(host.ledger.held(Holding::memoryHandle).size() +
                               host.ledger.held(Holding::block).size()),
          static_cast<int64_t>(host.ledger.held(Holding::suite).size())};
}

std::string DescribeGrowth(const Usage& before, const Usage& now) {
  std::string lines;
  Compare(lines, "bytes of memory", before.memory, now.memory, kLittleMemory);
  Compare(lines, "open descriptors", before.descriptors, now.descriptors, 0);
  Compare(lines, "files", before.files, now.files, 0);
  Compare(lines, "memory handles and blocks", before.handles, now.handles, 0);
  Compare(lines, "acquired suites", before.suites, now.suites, 0);
  return lines;
}

}  // namespace host
