#include "CppCoreMacros.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <map>

#include "ErrorCatalogueRows.h"
#include "GMutex.h"
#include "GScopedLock.h"

namespace {

using NameMap = std::map<uint32_t, std::string>;

constexpr char kUnknownName[] = "Unknown error code";

static_assert(std::size(kErrorCatalogueRows) == 277);
static_assert(std::adjacent_find(std::begin(kErrorCatalogueRows), std::end(kErrorCatalogueRows),
                                 [](const ErrorCatalogueRow& row, const ErrorCatalogueRow& next) {
                                   return row.code >= next.code;
                                 }) == std::end(kErrorCatalogueRows));

const NameMap* BuildNameMap() {
  auto* const map = new NameMap;
  for (const ErrorCatalogueRow& row : kErrorCatalogueRows) map->emplace(row.code, row.name);
  return map;
}

}  // namespace

void ReportFailedCheck(const char* category, GLogger::LoggingLevel level, uint32_t code,
                       const char* file, int line, const char* expression) {
  GLogger* const logger = GLogger::GetSharedInstance();
  const std::string name = GetNameForErrorCode(code);
  logger->Log(category, level, "Error='%s'  File='%s'  Line=%d  Expression='%s'  Code='%u'  ",
              name.c_str(), file, line, expression, code);
}

std::string GetNameForErrorCode(uint32_t code) {
  static GMutex mutex;
  // Built on the first lookup and never destroyed. The first load needs no lock, because its
  // acquire pairs with the release of the store.
  static constinit std::atomic<const NameMap*> gMap = nullptr;
  const NameMap* names = gMap.load(std::memory_order_acquire);
  if (names == nullptr) {
    const GScopedLock lock(mutex);
    if (!lock.IsLocked()) return kUnknownName;
    names = gMap.load(std::memory_order_relaxed);
    if (names == nullptr) {
      names = BuildNameMap();
      gMap.store(names, std::memory_order_release);
    }
  }
  const auto found = names->find(code);
  return found != names->end() ? found->second : kUnknownName;
}
