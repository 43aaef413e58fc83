#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SessionPart.h"
#include "YamlValue.h"

namespace host {

/// An operation of the framework, and the names that the journal gives to its arguments.
struct Operation {
  std::string_view name;
  std::vector<std::string_view> arguments;

  bool has(std::string_view argument) const {
    return std::ranges::find(arguments, argument) != arguments.end();
  }
};

/// Returns the operation that `value` names. Throws `SessionFileError` if there is none.
const Operation& FindOperation(const YamlValue& value, const std::string& name);

/// What the framework is to answer to a call in place of its own answer.
struct Answer {
  std::string operation;
  std::string line;      ///< of the session folder's file
  int64_t call = 0;      ///< the number of the call that it is for, or 0 for the next one
  bool isFault = false;  ///< not what a user does
};

/// Reads a list of answers. Throws `SessionFileError`.
std::vector<Answer> ReadAnswers(const YamlValue& value);

/// Returns the steps, as YAML, of which each makes this call alone go wrong in one way.
std::vector<std::string> AnswersThatFail(const CountedCall& call);
/// Returns such steps for the first two calls of each operation that takes arguments.
std::vector<std::string> AnswersThatFail();

}  // namespace host
