#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "AfterEachTest.h"
#include "GLogger.h"

/// Registers an appender with a logger and keeps the lines that it gets.
class LogLines {
 public:
  explicit LogLines(const std::string& key = "test",
                    GLogger& logger = *GLogger::GetSharedInstance()) {
    logger.AddAppender(key, std::make_unique<Appender>(mLines));
  }

  /// Returns the lines as delivered.
  const std::vector<std::string>& Lines() const { return *mLines; }

  /// Returns the lines without time and line feed, and without the place of a failed check.
  std::vector<std::string> Entries() const {
    std::vector<std::string> entries;
    for (const std::string& line : *mLines) {
      const size_t start = line.find('\t') + 1;
      entries.push_back(WithoutPlace(line.substr(start, line.size() - start - 1)));
    }
    return entries;
  }

 private:
  struct Appender : GLogAppender {
    explicit Appender(std::shared_ptr<std::vector<std::string>> lines) : mLines(std::move(lines)) {}
    void Append(const std::string& line) override { mLines->push_back(line); }
    std::shared_ptr<std::vector<std::string>> mLines;
  };

  // The place of a failed check reads "  File='GThread.cpp'  Line=12".
  static std::string WithoutPlace(const std::string& entry) {
    const char* const kLine = "'  Line=";
    const size_t file = entry.find("  File='");
    const size_t line = entry.find(kLine, file);
    if (file == std::string::npos || line == std::string::npos) return entry;
    const size_t end = entry.find_first_not_of("0123456789", line + std::strlen(kLine));
    return entry.substr(0, file) + (end == std::string::npos ? "" : entry.substr(end));
  }

  // Shared, because the logger keeps the appender.
  std::shared_ptr<std::vector<std::string>> mLines = std::make_shared<std::vector<std::string>>();
};

inline const bool kSharedLoggerIsReset = AfterEachTest([] {
  GLogger::GetSharedInstance()->RemoveAllAppenders();
  GLogger::GetSharedInstance()->ResetAllLoggingLevels();
});

/// Returns the entry of a failed check as `LogLines::Entries` does.
inline std::string CheckEntry(const std::string& category, const std::string& name,
                              const std::string& expression, uint32_t code,
                              const std::string& level = "Error") {
  return "[" + category + "]\t[" + level + "]\tError='" + name + "'  Expression='" + expression +
         "'  Code='" + std::to_string(code) + "'  ";
}
