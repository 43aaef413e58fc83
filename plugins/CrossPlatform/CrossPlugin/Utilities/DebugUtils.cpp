#include "DebugUtils.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <map>
#include <string>
#include <utility>

namespace {

constexpr size_t kTraceBufferSize = 65536;
constexpr size_t kBlanksPerIndent = 2;

std::function<void(std::string_view)> sTraceSink;

int sIndent = 0;
std::map<std::string, std::string> sLastTexts;  // by subject

// Writes a beginning at the old indent and an end at the new one, so that the two line up.
void WriteToSink(int indentChange, const char* text) {
  if (indentChange < 0) sIndent += indentChange;
  const auto blanks = static_cast<size_t>(std::max(sIndent, 0)) * kBlanksPerIndent;
  if (indentChange > 0) sIndent += indentChange;
  sTraceSink(std::string(blanks, ' ') + text);
}

}  // namespace

void OutputIndentedAndFormattedString(int indentChange, const char* format, ...) {
  std::array<char, kTraceBufferSize> text{};
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  if (sTraceSink) WriteToSink(indentChange, text.data());
}

bool TraceIsOn() {
  return static_cast<bool>(sTraceSink);
}

bool IsNews(const std::string& subject, const std::string& text) {
  return TraceIsOn() && std::exchange(sLastTexts[subject], text) != text;
}

void SetTraceSink(std::function<void(std::string_view text)> sink) {
  sTraceSink = std::move(sink);
  sIndent = 0;
  sLastTexts.clear();
}
