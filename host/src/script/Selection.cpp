#include "Selection.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <regex>
#include <utility>

#include "TextFile.h"
#include "YamlValue.h"

namespace host {
namespace {

// Puts the folder in front of each name that two files have. Throws `SessionFileError` if that
// doesn't tell two sessions apart.
void TellNamesApart(std::vector<std::pair<std::string, std::vector<Session>>>& files) {
  std::map<std::string, int> counts;
  for (const auto& [file, sessions] : files) ++counts[std::filesystem::path(file).stem().string()];
  for (auto& [file, sessions] : files) {
    const std::filesystem::path path(file);
    if (counts[path.stem().string()] < 2) continue;
    for (Session& session : sessions) {
      session.name = (path.parent_path() / session.name).string();
    }
  }
  std::map<std::string, std::string> fileOf;
  for (const auto& [file, sessions] : files) {
    for (const Session& session : sessions) {
      const auto [known, isNew] = fileOf.emplace(session.name, file);
      if (isNew) continue;
      throw SessionFileError(fmt::format("{}: a session of {} has the name '{}' too", file,
                                         known->second, session.name));
    }
  }
}

std::regex MakeFilter(const std::string& text) {
  try {
    return std::regex(text);
  } catch (const std::regex_error& error) {
    throw SessionFileError(fmt::format("--filter: {}: {}", text, error.what()));
  }
}

}  // namespace

std::vector<Session> FilterSessions(std::vector<Session> sessions, const std::string& expression) {
  const std::regex filter = MakeFilter(expression);
  std::erase_if(sessions,
                [&](const Session& session) { return !std::regex_search(session.name, filter); });
  if (sessions.empty()) {
    throw SessionFileError("no session matches --filter " + expression);
  }
  return sessions;
}

std::vector<Session> LoadSelected(const std::vector<std::string>& names, const std::string& filter,
                                  const SessionPart& part) {
  std::vector<std::pair<std::string, std::vector<Session>>> files;
  std::vector<std::string> faults;
  for (const std::string& file : names) {
    try {
      files.emplace_back(file, LoadSessions(file, part));
    } catch (const SessionFileError& fault) {
      faults.emplace_back(fault.what());
    }
  }
  if (!faults.empty()) throw SessionFileError(Join(faults, "\n"));
  TellNamesApart(files);
  std::vector<Session> sessions;
  for (auto& [file, loaded] : files) {
    std::move(loaded.begin(), loaded.end(), std::back_inserter(sessions));
  }
  return FilterSessions(std::move(sessions), filter);
}

}  // namespace host
