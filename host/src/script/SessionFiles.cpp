#include "SessionFiles.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <utility>

#include "TextFile.h"
#include "YamlValue.h"

namespace host {
namespace {

namespace fs = std::filesystem;

std::string ReadSessionFile(const std::string& file) {
  const std::ifstream stream(file, std::ios::binary);
  if (!stream || fs::is_directory(file)) {
    throw SessionFileError(fmt::format("{}: can't be read", file));
  }
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

std::vector<Session> ReadFiles(const std::vector<std::string>& files, const SessionPart& part) {
  std::vector<Session> sessions;
  std::vector<std::string> faults;
  for (const std::string& file : files) {
    try {
      std::vector<Session> read = ReadSessions(file, ReadSessionFile(file), part);
      std::move(read.begin(), read.end(), std::back_inserter(sessions));
    } catch (const SessionFileError& fault) {
      faults.emplace_back(fault.what());
    }
  }
  if (!faults.empty()) throw SessionFileError(Join(faults, "\n"));
  return sessions;
}

// Puts the folder in front of each name that two files have. Throws `SessionFileError` if that
// doesn't tell two sessions apart.
void TellNamesApart(std::vector<Session>& sessions) {
  std::map<std::string, std::set<std::string>> filesOf;
  for (const Session& session : sessions) {
    filesOf[fs::path(session.file).stem().string()].insert(session.file);
  }
  std::map<std::string, std::string> fileOf;
  for (Session& session : sessions) {
    const fs::path path(session.file);
    if (filesOf[path.stem().string()].size() > 1) {
      session.name = (path.parent_path() / session.name).string();
    }
    const auto [known, isNew] = fileOf.emplace(session.name, session.file);
    if (isNew) continue;
    throw SessionFileError(fmt::format("{}: a session of {} has the name '{}' too", session.file,
                                       known->second, session.name));
  }
}

}  // namespace

std::vector<Session> LoadSessions(const std::vector<std::string>& files,
                                  const std::string& expression, const SessionPart& part) {
  std::vector<Session> sessions = files.empty() ? ValidationSessions(part) : ReadFiles(files, part);
  TellNamesApart(sessions);
  try {
    std::erase_if(sessions, [filter = std::regex(expression)](const Session& session) {
      return !std::regex_search(session.name, filter);
    });
  } catch (const std::regex_error& error) {
    throw SessionFileError(fmt::format("--filter: {}: {}", expression, error.what()));
  }
  if (sessions.empty()) throw SessionFileError("no session matches --filter " + expression);
  return sessions;
}

std::vector<KnownIssue> LoadKnownIssues(const std::string& file) {
  std::vector<KnownIssue> issues;
  YamlFile yaml(file, ReadSessionFile(file));
  const auto read = [&](const YamlValue& list) { issues = ReadKnownIssues(list); };
  YamlValue(yaml.root(), "the file", yaml).readKeys({{"known issues", read, true}});
  yaml.throwFaults();
  for (KnownIssue& issue : issues) issue.isOfEverySession = true;
  return issues;
}

std::string WriteSession(const YAML::Node& session, const std::string& comment) {
  YAML::Emitter emitter;
  emitter << YAML::Comment(EscapeControls(comment)) << session;
  return std::string(emitter.c_str()) + "\n";
}

}  // namespace host
