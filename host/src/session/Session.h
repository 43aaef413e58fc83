#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Host.h"

namespace host {

/// The contents of the session folder at the beginning. Paths are relative to it.
struct SessionFolderSetup {
  std::vector<std::pair<std::string, std::vector<std::string>>> projects;  ///< path and fonts
  std::vector<std::pair<std::string, std::string>> vault;                  ///< font and policy
  std::vector<std::string> activeFonts;
  bool hasFramework = true;
  std::string frameworkFolder = ".";
  std::string missingExport;                               ///< of the framework; empty for none
  std::string frameworkPlace;                              ///< in the session file, for errors
  std::vector<std::pair<std::string, std::string>> files;  ///< path and text
  std::vector<std::string> processes;  ///< executables that run beside the session
};

struct Step {
  std::string place;  ///< in the session file
  std::function<void(Host&)> play;
};

struct Session {
  std::string name;
  std::string about;
  HostSettings host;
  SessionFolderSetup folder;
  std::vector<Step> steps;  ///< with the first start and the last quit
};

/// Reads the sessions of a file: one, or one for each variant. Throws `SessionFileError`.
std::vector<Session> LoadSessions(const std::filesystem::path& file);

}  // namespace host
