#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Findings.h"
#include "Host.h"
#include "RunListener.h"

namespace host {

/// The contents of the session folder at the beginning. Paths are relative to it.
struct FolderSetup {
  std::vector<std::pair<std::string, std::vector<std::string>>> projects;  ///< path and fonts
  std::vector<std::string> activeFonts;
  std::vector<std::pair<std::string, std::string>> files;            ///< path and text
  std::vector<std::pair<std::string, std::filesystem::path>> links;  ///< path and target folder
  std::vector<std::pair<std::string, std::filesystem::path>>
      executables;  ///< path and the original
};

using Action = std::function<void(Host&)>;

struct Step {
  std::string place;  ///< in the session file
  Action play;
  bool quits = false;  ///< ends the host
};

/// The place of what happens while a session settles.
inline constexpr char kSettling[] = "settling";

struct Session : SessionInfo {
  HostSettings host;
  /// Variables of the process that plays the session. `${session}` stands for the session folder.
  std::vector<std::pair<std::string, std::string>> environment;
  FolderSetup setUp;
  std::vector<KnownIssue> knownIssues;
  std::vector<Action> preparations;  ///< before the first step
  std::vector<Step> steps;           ///< with the first start and the last quit
  std::vector<Action> settling;      ///< of a tolerant session, before the host quits
  bool settles = true;               ///< a tolerant session plays them
  std::vector<Action> finalChecks;   ///< after the last call of the plug-in
  std::string text;                  ///< of a file that has only this session, for a sweep
};

struct SessionPart;
class YamlValue;

/// Reads the sessions of a file with this text: one, or one for each variant. `part` reads what
/// isn't the host's, and outlives the sessions. Throws `SessionFileError`.
std::vector<Session> ReadSessions(const std::string& file, const std::string& text,
                                  const SessionPart& part);

/// Reads the value of a session's key `known issues`. Throws `SessionFileError`.
std::vector<KnownIssue> ReadKnownIssues(const YamlValue& list);

}  // namespace host
