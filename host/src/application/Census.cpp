#include "Census.h"

namespace host {

void Census::tell(std::string_view function) {
  auto& [name, calls] = *mCalls.try_emplace(std::string(function)).first;
  ++calls.number;
  calls.inEntry = calls.entry == mEntry ? calls.inEntry + 1 : 1;
  calls.entry = mEntry;
  if (!mResting) mListener({name, calls.number, mEntry, calls.inEntry});
}

}  // namespace host
