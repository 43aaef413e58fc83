#pragma once

#include <string>
#include <vector>

#include "SessionPart.h"

namespace host {

/// Reads the answers that the framework is to give. Throws `SessionFileError`.
Action ReadAnswers(const YamlValue& value);

/// Returns the steps, as YAML, of which each makes this call alone go wrong in one way.
std::vector<std::string> AnswersThatFail(const CountedCall& call);

}  // namespace host
