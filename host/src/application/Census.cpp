#include "Census.h"

namespace host {

void Census::tell(std::string_view function) {
  const auto number = mNumbers.try_emplace(std::string(function), 0).first;
  ++number->second;
  if (!mResting) mListener({number->first, number->second, mEntry});
}

}  // namespace host
