#pragma once

#include <cstdint>
#include <string>

#include "CoreErrorCodes.h"
#include "GLogger.h"

/// A signed 32-bit integer, by the name that the texts of checks use.
using TSInt32 = int32_t;

// The check macros: how a function of this library reports a failure.
//
// A function that checks owns `uint32_t err = CoreErrorCodes::kSuccess;` and answers it. A check
// stores its code there; a failed one also writes an entry to the logger and returns `err`. A
// function with another result runs its checked part in a function of that form, which has an
// out-parameter, and drops the code.
//
// Each macro turns its argument into text itself, because one that handed it on to another would
// log what NULL or PATH_MAX stand for. The macros have no locals, so that nothing in an expression,
// `err` included, can mean something else inside them.

/// Fails when `expression`, which yields a code, yields anything but 0.
#define CORE_CHECK_RESULT(expression, category) \
  CORE_CHECK_CODE((expression), #expression, GLogger::kLoggingLevelError, category)

/// `CORE_CHECK_RESULT` that reports at another level than `kLoggingLevelError`.
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

/// What the checks above have in common. Not for use by itself.
#define CORE_CHECK_CODE(code, text, level, category)                     \
  do {                                                                   \
    err = (code);                                                        \
    if (err != CoreErrorCodes::kSuccess) {                               \
      ReportFailedCheck(category, level, err, __FILE__, __LINE__, text); \
      return err;                                                        \
    }                                                                    \
  } while (false)

/// Writes the entry of a failed check. Called by the check macros only.
void ReportFailedCheck(const char* category, GLogger::LoggingLevel level, uint32_t code,
                       const char* file, int line, const char* expression);

/// Returns the name of an error code, for example "CoreErrorCodes::kNullPointer" for 0x05000000, or
/// "Unknown error code". Any thread.
std::string GetNameForErrorCode(uint32_t code);
