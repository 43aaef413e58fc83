#include "GDateTime.h"

#include <algorithm>
#include <locale>
#include <sstream>

#include "CppCoreMacros.h"

namespace {

// Stores `value` in `field` and returns 0 if it is within the bounds, both included.
uint32_t AssignField(short min, short max, int value, short& field) {
  uint32_t err = CoreErrorCodes::kSuccess;
  CORE_CHECK_CONDITION(value < static_cast<TSInt32>(min) || value > static_cast<TSInt32>(max),
                       GDateTime::kParsingError, "Miscellaneous");
  field = static_cast<short>(value);
  return err;
}

// Appends the value, padded with zeros on the left.
void AppendField(std::string& text, short value, size_t width) {
  const std::string digits = std::to_string(value);
  text.append(width - std::min(width, digits.size()), '0').append(digits);
}

}  // namespace

const GDateTime GDateTime::kEmptyDateTime{std::string()};
const GDateTime GDateTime::kMaxDateTime{std::string("2099-12-31T23:59:59.999Z")};

GDateTime::GDateTime() : mDateTime(OSGetCurrentDateTimeUTC().mDateTime) {}

GDateTime::GDateTime(const SDateTime& dateTime) : mDateTime(dateTime) {}

GDateTime::GDateTime(const std::string& dateString) {
  SetOrReport(dateString);
}

uint32_t GDateTime::SetOrReport(const std::string& dateString) {
  uint32_t err = CoreErrorCodes::kSuccess;
  CORE_CHECK_RESULT(SetFromISO8601String(dateString), "Miscellaneous");
  return err;
}

// Checks only bounds and the next character. `>>` stores 0 if there is no digit. At the end of the
// text it stores nothing, so `originalValue` keeps the previous number.
uint32_t GDateTime::SetFromISO8601String(const std::string& text) {
  uint32_t err = CoreErrorCodes::kSuccess;
  SDateTime dateTime;
  if (text.empty()) {
    mDateTime = dateTime;
    return err;
  }
  std::istringstream ssTime(text);
  // The host's locale may group digits.
  ssTime.imbue(std::locale::classic());
  int originalValue = 0;
  char separator = 0;

  ssTime >> originalValue;
  CORE_CHECK_RESULT(AssignField(kMinYear, kMaxYear, originalValue, dateTime.year), "Miscellaneous");
  CORE_CHECK_CONDITION(ssTime.peek() != '-', kParsingError, "Miscellaneous");
  ssTime >> separator >> originalValue;
  CORE_CHECK_RESULT(AssignField(kMinMonth, kMaxMonth, originalValue, dateTime.month),
                    "Miscellaneous");
  CORE_CHECK_CONDITION(ssTime.peek() != '-', kParsingError, "Miscellaneous");
  ssTime >> separator >> originalValue;
  CORE_CHECK_RESULT(AssignField(kMinDay, kMaxDay, originalValue, dateTime.day), "Miscellaneous");

  if (!ssTime.eof()) {
    CORE_CHECK_CONDITION(ssTime.peek() != 'T', kParsingError, "Miscellaneous");
    ssTime >> separator >> originalValue;
    CORE_CHECK_RESULT(AssignField(kMinHour, kMaxHour, originalValue, dateTime.hour),
                      "Miscellaneous");
    CORE_CHECK_CONDITION(ssTime.peek() != ':', kParsingError, "Miscellaneous");
    ssTime >> separator >> originalValue;
    CORE_CHECK_RESULT(AssignField(kMinMinute, kMaxMinute, originalValue, dateTime.minute),
                      "Miscellaneous");
  }
  const bool hasSeconds = ssTime.peek() == ':';
  if (hasSeconds) {
    ssTime >> separator >> originalValue;
    CORE_CHECK_RESULT(AssignField(kMinSecond, kMaxSecond, originalValue, dateTime.second),
                      "Miscellaneous");
  }
  if (hasSeconds && ssTime.peek() == '.') {
    short milliseconds = 0;
    ssTime >> separator >> milliseconds;
    originalValue = std::min(milliseconds, kMaxMillisecond);
    CORE_CHECK_RESULT(
        AssignField(kMinMillisecond, kMaxMillisecond, originalValue, dateTime.millisecond),
        "Miscellaneous");
  }
  mDateTime = dateTime;
  return err;
}

std::string GDateTime::GetAsISO8601String(bool includeTime) const {
  std::string text;
  if (IsEmpty()) return text;
  AppendField(text, mDateTime.year, 4);
  AppendField(text += '-', mDateTime.month, 2);
  AppendField(text += '-', mDateTime.day, 2);
  if (includeTime) {
    AppendField(text += 'T', mDateTime.hour, 2);
    AppendField(text += ':', mDateTime.minute, 2);
    AppendField(text += ':', mDateTime.second, 2);
    AppendField(text += '.', mDateTime.millisecond, 3);
    text += 'Z';
  }
  return text;
}

bool GDateTime::IsEmpty() const {
  return mDateTime == SDateTime();
}
