#include "Faults.h"

#include <algorithm>
#include <utility>

namespace host {

std::set<std::string, std::less<>>& FunctionsThatCanFail() {
  static std::set<std::string, std::less<>> functions{kSendEvent};
  return functions;
}

void Faults::add(Fault fault) {
  std::erase_if(mFaults, [&](const Fault& other) {
    return other.function == fault.function && (other.call > 0) == (fault.call > 0);
  });
  mFaults.push_back(std::move(fault));
}

A_Err Faults::take(std::string_view function) {
  A_Err result = A_Err_NONE;
  for (Fault& fault : mFaults) {
    if (fault.function != function || fault.times == 0) continue;
    // The number of a call says which one it is, whatever becomes of those before it.
    if (mPaused && fault.call == 0) continue;
    if (fault.call > 0 && --fault.call > 0) continue;
    if (fault.times > 0) --fault.times;
    fault.met = true;
    if (!mPaused) result = fault.result;
  }
  return result;
}

std::vector<std::string> Faults::unmet(bool byNumber) const {
  std::vector<std::string> functions;
  for (const Fault& fault : mFaults) {
    const bool isUnmet = !fault.met || fault.times > 0;
    if (isUnmet && (!byNumber || fault.call > 0)) functions.push_back(fault.function);
  }
  return functions;
}

}  // namespace host
