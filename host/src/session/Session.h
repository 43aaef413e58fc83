#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Host.h"
#include "RunListener.h"

namespace host {

/// The contents of the session folder at the beginning. Paths are relative to it.
struct FolderSetup {
  std::vector<std::pair<std::string, std::vector<std::string>>> projects;  ///< path and fonts
  std::vector<std::string> activeFonts;
  std::vector<std::pair<std::string, std::string>> files;            ///< path and text
  std::vector<std::pair<std::string, std::filesystem::path>> links;  ///< path and target folder
  /// Executables that run beside the session: their path, and the file to copy there.
  std::vector<std::pair<std::string, std::filesystem::path>> processes;
};

using Action = std::function<void(Host&)>;

struct Step {
  std::string place;  ///< in the session file
  Action play;
  bool quits = false;  ///< ends the host
};

struct Session : SessionInfo {
  HostSettings host;
  FolderSetup setUp;
  std::vector<Action> preparations;  ///< before the first step
  std::vector<Step> steps;           ///< with the first start and the last quit
  std::vector<Action> settling;      ///< of a tolerant session, before the host quits
  std::vector<Action> finalChecks;   ///< after the last step
};

class SessionPart;

/// Reads the sessions of a file: one, or one for each variant. `part` reads what isn't the host's,
/// and outlives the sessions. Throws `SessionFileError`.
std::vector<Session> LoadSessions(const std::filesystem::path& file, const SessionPart& part);
/// Does the same for the text of such a file.
std::vector<Session> ReadSessions(const std::string& file, const std::string& yaml,
                                  const SessionPart& part);

}  // namespace host
