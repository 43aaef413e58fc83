#include "SessionFolder.h"

#include <fstream>

namespace tamberlink {

std::optional<Strings> readLines(const std::string& file) {
  std::ifstream stream(file);
  if (!stream) return std::nullopt;
  Strings lines;
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  // A directory can be opened, but not read.
  if (stream.bad()) return std::nullopt;
  return lines;
}

Strings readSessionLines(const std::string& file) {
  return readLines(file).value_or(Strings());
}

void appendLine(const std::string& file, const std::string& line) {
  std::ofstream stream;
  stream.exceptions(std::ios::failbit | std::ios::badbit);
  stream.open(file, std::ios::app);
  stream << line << '\n' << std::flush;
}

bool readFlag(const std::string& key, bool byDefault) {
  for (const std::string& line : readSessionLines("framework-state")) {
    const auto [name, value] = splitOnce(line, '=');
    if (name == key) return value == "true";
  }
  return byDefault;
}

}  // namespace tamberlink
