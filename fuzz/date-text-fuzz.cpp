#include <cstddef>
#include <cstdint>
#include <string>

#include "GDateTime.h"
#include "Require.h"

// Input: a text. A refused text leaves the value unchanged. The fields of an accepted one are
// within their bounds, and the value writes a text that reads back.

namespace {

bool IsWithin(int value, int min, int max) {
  return min <= value && value <= max;
}

bool IsWithinBounds(const SDateTime& fields) {
  return IsWithin(fields.year, 0, 9999) && IsWithin(fields.month, 1, 12) &&
         IsWithin(fields.day, 1, 31) && IsWithin(fields.hour, 0, 23) &&
         IsWithin(fields.minute, 0, 59) && IsWithin(fields.second, 0, 59) &&
         IsWithin(fields.millisecond, 0, 999);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  GDateTime value = GDateTime::kMaxDateTime;
  if (value.SetFromISO8601String(text) != 0) {
    Require(value.GetSDateTime() == GDateTime::kMaxDateTime.GetSDateTime(),
            "a refused text leaves the value unchanged");
    return 0;
  }

  const SDateTime fields = value.GetSDateTime();
  Require(text.empty() ? value.IsEmpty() : IsWithinBounds(fields), "fields are within the bounds");

  const std::string written = value.GetAsISO8601String(true);
  Require(written.size() == (text.empty() ? 0 : 24), "a written text has 24 characters, or none");
  Require(written.substr(0, 10) == value.GetAsISO8601String(false),
          "both forms begin with the same date");
  Require(GDateTime(written).GetSDateTime() == fields, "a written text reads back");
  return 0;
}
