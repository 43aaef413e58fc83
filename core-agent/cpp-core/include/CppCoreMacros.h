#pragma once

#include <cstdint>
#include <string>

#include "CoreErrorCodes.h"
#include "GLogger.h"

/// A signed 32-bit integer. Expressions of checks use this name.
using TSInt32 = int32_t;

// The check macros report the failures of this library.
//
// The text of a checked expression is part of the log format, so keep its names and its spelling
// when you refactor. Some variables and parameters have their names and types for its sake.
//
// A function that checks owns `uint32_t err = CoreErrorCodes::kSuccess;` and returns it. Each check
// stores its code in `err`. A failed check also writes an entry to the logger and returns `err`. A
// function whose result isn't a code lets a second function check, gets the value through an
// out-parameter, and drops the code.
//
// Each macro turns its own argument into text. If it passed the argument to another macro, NULL and
// PATH_MAX would be expanded first. The macros have no locals, so that every name in an expression,
// `err` included, keeps its meaning.

/// Fails when the code that `expression` yields isn't 0.
#define CORE_CHECK_RESULT(expression, category) \
  CORE_CHECK_CODE((expression), #expression, GLogger::kLoggingLevelError, category)

/// `CORE_CHECK_RESULT` with another level than `kLoggingLevelError`.
#define CORE_CHECK_RESULT_AT_LEVEL(expression, level, category) \
  CORE_CHECK_CODE((expression), #expression, level, category)

/// Fails with `code` when `failureCondition` is true.
#define CORE_CHECK_CONDITION(failureCondition, code, category)                               \
  CORE_CHECK_CODE((failureCondition) ? (code) : CoreErrorCodes::kSuccess, #failureCondition, \
                  GLogger::kLoggingLevelError, category)

/// Fails with `CoreErrorCodes::kNullPointer` when `pointer` is null.
#define CORE_CHECK_NOT_NULL(pointer, category)                                                    \
  CORE_CHECK_CODE((pointer) == nullptr ? CoreErrorCodes::kNullPointer : CoreErrorCodes::kSuccess, \
                  "(" #pointer ") == nullptr", GLogger::kLoggingLevelError, category)

/// The common part of the checks above. Not for direct use.
#define CORE_CHECK_CODE(code, text, level, category)                     \
  do {                                                                   \
    err = (code);                                                        \
    if (err != CoreErrorCodes::kSuccess) {                               \
      ReportFailedCheck(category, level, err, __FILE__, __LINE__, text); \
      return err;                                                        \
    }                                                                    \
  } while (false)

/// Writes the entry of a failed check. For the check macros only.
void ReportFailedCheck(const char* category, GLogger::LoggingLevel level, uint32_t code,
                       const char* file, int line, const char* expression);

/// Returns the name of an error code, for example "CoreErrorCodes::kNullPointer" for 0x05000000, or
/// "Unknown error code". Any thread.
std::string GetNameForErrorCode(uint32_t code);
