#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Host.h"

namespace host {

/// What lies in the session folder when the session begins. Paths are relative to that folder.
struct SessionFolderSetup {
  std::vector<std::pair<std::string, std::vector<std::string>>> projects;  ///< path and fonts
  std::vector<std::pair<std::string, std::string>> vault;                  ///< font and policy
  std::vector<std::string> activeFonts;
  bool hasFramework = true;
  std::string frameworkFolder = ".";
  std::string missingExport;                               ///< of the framework; empty for none
  std::string frameworkPlace;                              ///< in the session file, for errors
  std::vector<std::pair<std::string, std::string>> files;  ///< path and text
  std::vector<std::string> processes;                      ///< executables that run meanwhile
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
  std::vector<Step> steps;  ///< the first start and the last quit are among them
};

/// The sessions of a file: one, or one for each of its variants. Throws `SessionFileError`.
std::vector<Session> LoadSessions(const std::filesystem::path& file);

}  // namespace host
