#include "GDateTime.h"

#include <algorithm>
#include <iomanip>
#include <locale>
#include <sstream>

#include "CppCoreMacros.h"

namespace {

// Stores `value` in `field` and returns 0 if it lies within the bounds, both included.
uint32_t AssignField(short min, short max, int value, short& field) {
  uint32_t err = CoreErrorCodes::kSuccess;
  CORE_CHECK_CONDITION(value < static_cast<TSInt32>(min) || value > static_cast<TSInt32>(max),
                       GDateTime::kParsingError, "Miscellaneous");
  field = static_cast<short>(value);
  return err;
}

}  // namespace

const GDateTime GDateTime::kEmptyDateTime{std::string()};
const GDateTime GDateTime::kMaxDateTime{std::string("2099-12-31T23:59:59.999Z")};

GDateTime::GDateTime() : mDateTime(OSGetCurrentDateTimeUTC().mDateTime) {}

GDateTime::GDateTime(const SDateTime& dateTime) : mDateTime(dateTime) {}

GDateTime::GDateTime(const std::string& dateString) {
  [this, &dateString] {
    uint32_t err = CoreErrorCodes::kSuccess;
    CORE_CHECK_RESULT(SetFromISO8601String(dateString), "Miscellaneous");
    return err;
  }();
}

uint32_t GDateTime::SetFromISO8601String(const std::string& text) {
  SDateTime dateTime;
  if (!text.empty()) {
    std::istringstream ssTime(text);
    // The host's locale may group digits.
    ssTime.imbue(std::locale::classic());
    int originalValue = 0;
    uint32_t err = ParseDate(ssTime, originalValue, dateTime);
    if (err == CoreErrorCodes::kSuccess && !ssTime.eof()) {
      err = ParseTimeOfDay(ssTime, originalValue, dateTime);
    }
    if (err != CoreErrorCodes::kSuccess) return err;
  }
  mDateTime = dateTime;
  return CoreErrorCodes::kSuccess;
}

// Only the bounds and the next character decide: an extraction that finds no digits stores 0, and
// one that meets the end of the text leaves the number before it in `originalValue`, which is why
// that is handed from here to the time of day.
uint32_t GDateTime::ParseDate(std::istream& ssTime, int& originalValue, SDateTime& dateTime) {
  uint32_t err = CoreErrorCodes::kSuccess;
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
  return err;
}

uint32_t GDateTime::ParseTimeOfDay(std::istream& ssTime, int& originalValue, SDateTime& dateTime) {
  uint32_t err = CoreErrorCodes::kSuccess;
  char separator = 0;

  CORE_CHECK_CONDITION(ssTime.peek() != 'T', kParsingError, "Miscellaneous");
  ssTime >> separator >> originalValue;
  CORE_CHECK_RESULT(AssignField(kMinHour, kMaxHour, originalValue, dateTime.hour), "Miscellaneous");

  CORE_CHECK_CONDITION(ssTime.peek() != ':', kParsingError, "Miscellaneous");
  ssTime >> separator >> originalValue;
  CORE_CHECK_RESULT(AssignField(kMinMinute, kMaxMinute, originalValue, dateTime.minute),
                    "Miscellaneous");

  if (ssTime.peek() != ':') return err;
  ssTime >> separator >> originalValue;
  CORE_CHECK_RESULT(AssignField(kMinSecond, kMaxSecond, originalValue, dateTime.second),
                    "Miscellaneous");

  if (ssTime.peek() != '.') return err;
  short milliseconds = 0;
  ssTime >> separator >> milliseconds;
  originalValue = std::min(milliseconds, kMaxMillisecond);
  CORE_CHECK_RESULT(
      AssignField(kMinMillisecond, kMaxMillisecond, originalValue, dateTime.millisecond),
      "Miscellaneous");
  return err;
}

std::string GDateTime::GetAsISO8601String(bool includeTime) const {
  if (IsEmpty()) return {};

  std::ostringstream text;
  // The host's locale may group digits.
  text.imbue(std::locale::classic());
  text << std::setfill('0');
  text << std::setw(4) << mDateTime.year << '-' << std::setw(2) << mDateTime.month << '-'
       << std::setw(2) << mDateTime.day;
  if (includeTime) {
    text << 'T' << std::setw(2) << mDateTime.hour << ':' << std::setw(2) << mDateTime.minute << ':'
         << std::setw(2) << mDateTime.second << '.' << std::setw(3) << mDateTime.millisecond << 'Z';
  }
  return text.str();
}

bool GDateTime::IsEmpty() const {
  return mDateTime == SDateTime();
}
