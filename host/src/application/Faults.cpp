#include "Faults.h"

namespace host {
namespace {

// The tables are made before `main` begins, in any order.
std::set<std::string, std::less<>>& KnownFunctions() {
  static std::set<std::string, std::less<>> functions{kSendEvent};
  return functions;
}

}  // namespace

const std::set<std::string, std::less<>>& FunctionsThatCanFail() {
  return KnownFunctions();
}

bool AddFunctionThatCanFail(const char* name) {
  KnownFunctions().emplace(name);
  return true;
}

void Faults::fail(const std::string& function, A_Err result, int64_t times) {
  mFailures[function] = {result, times, false};
}

void Faults::failCall(const std::string& function, A_Err result, int64_t call) {
  mFailingCalls[function] = {result, call};
}

A_Err Faults::take(std::string_view function) {
  const A_Err ofCall = takeCall(function);
  if (mResting) return A_Err_NONE;
  const A_Err result = takeAlways(function);
  return result != A_Err_NONE ? result : ofCall;
}

A_Err Faults::takeCall(std::string_view function) {
  if (mFailingCalls.empty()) return A_Err_NONE;
  const auto entry = mFailingCalls.find(function);
  if (entry == mFailingCalls.end() || --entry->second.callsLeft > 0) return A_Err_NONE;
  const A_Err result = entry->second.result;
  mFailingCalls.erase(entry);
  return result;
}

A_Err Faults::takeAlways(std::string_view function) {
  if (mFailures.empty()) return A_Err_NONE;
  const auto entry = mFailures.find(function);
  if (entry == mFailures.end()) return A_Err_NONE;
  Failure& failure = entry->second;
  const A_Err result = failure.result;
  failure.met = true;
  if (failure.times != kAlways && --failure.times == 0) mFailures.erase(entry);
  return result;
}

bool Faults::refuses(std::string_view suite, int32 version) const {
  return !mResting && !mRefused.empty() && mRefused.contains({std::string(suite), version});
}

std::vector<std::string> Faults::unmet() const {
  std::vector<std::string> functions;
  for (const auto& [function, failure] : mFailures) {
    if (!failure.met || failure.times != kAlways) functions.push_back(function);
  }
  for (const auto& [function, call] : mFailingCalls) functions.push_back(function);
  return functions;
}

}  // namespace host
