#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "YamlValue.h"

namespace host {

/// An operation of the framework, and the names that the journal gives to its arguments.
struct Operation {
  std::string_view name;
  std::vector<std::string_view> arguments;

  bool has(std::string_view argument) const {
    return std::find(arguments.begin(), arguments.end(), argument) != arguments.end();
  }
};

/// All of them.
extern const std::vector<Operation> kOperations;

/// Returns the operation that `value` names. Throws `SessionFileError` if there is none.
const Operation& FindOperation(const YamlValue& value, const std::string& name);

}  // namespace host
