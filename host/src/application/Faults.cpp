#include "Faults.h"

namespace host {

void Faults::fail(const std::string& function, A_Err result, int64_t times) {
  mFailures[function] = {result, times, false};
}

A_Err Faults::take(FailingFunction function) {
  if (mFailures.empty()) return A_Err_NONE;
  const auto entry = mFailures.find(function.name);
  if (entry == mFailures.end()) return A_Err_NONE;
  Failure& failure = entry->second;
  const A_Err result = failure.result;
  failure.met = true;
  if (failure.times != kAlways && --failure.times == 0) mFailures.erase(entry);
  return result;
}

bool Faults::refuses(std::string_view suite, int32 version) const {
  return !mRefused.empty() && mRefused.contains({std::string(suite), version});
}

std::vector<std::string> Faults::unmet() const {
  std::vector<std::string> functions;
  for (const auto& [function, failure] : mFailures) {
    if (!failure.met || failure.times != kAlways) functions.push_back(function);
  }
  return functions;
}

}  // namespace host
