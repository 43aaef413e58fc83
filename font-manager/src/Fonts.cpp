#include "Fonts.h"

#include <algorithm>
#include <map>
#include <set>

#include "SessionFolder.h"

namespace tamberlink {
namespace {

const char* const kActiveFonts = "active-fonts";

std::map<std::string, std::string> readVault() {
  std::map<std::string, std::string> policies;
  for (const std::string& line : readSessionLines("vault")) policies.insert(splitOnce(line, '\t'));
  return policies;
}

std::set<std::string> readActiveFonts() {
  const Strings active = readSessionLines(kActiveFonts);
  return {active.begin(), active.end()};
}

}  // namespace

MissingFonts findMissingFonts(const Strings& used) {
  const auto policies = readVault();
  std::set<std::string> seen = readActiveFonts();
  MissingFonts missing;
  const std::map<std::string, Strings*> groups = {{"automatic", &missing.automatic},
                                                  {"choice", &missing.choice},
                                                  {"restricted", &missing.restricted}};
  for (const std::string& font : used) {
    const auto entry = policies.find(font);
    if (entry != policies.end() && seen.insert(font).second) {
      groups.at(entry->second)->push_back(font);
    }
  }
  return missing;
}

bool areActive(const Strings& fonts) {
  const std::set<std::string> active = readActiveFonts();
  return std::all_of(fonts.begin(), fonts.end(),
                     [&active](const std::string& font) { return active.contains(font); });
}

void activateFonts(const Strings& fonts) {
  for (const std::string& font : fonts) appendLine(kActiveFonts, font);
}

}  // namespace tamberlink
