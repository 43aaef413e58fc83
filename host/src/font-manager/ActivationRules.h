#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Event.h"
#include "Host.h"

namespace host {

/// What has to hold after a font activation process of the plug-in, whatever the user, the host and
/// the font manager did. Sees the process from outside: by the calls of the framework and by what
/// happens to the project.
class ActivationRules {
 public:
  /// Begins to watch the host's project. The host outlives this object.
  void begin(Host& host);
  /// Takes note of a call of the framework, with its arguments and results by name. `isFaulty` says
  /// that the session has changed its results, `isRunning` that an activation runs.
  void take(const std::string& operation, const std::vector<Argument>& fields, bool isFaulty,
            bool isRunning);
  /// Lets the host and the font manager work, gives an activation the time to end, and reports what
  /// doesn't hold.
  void settle();

 private:
  struct Closed {
    std::string path;
    int64_t tick = 0;         ///< on which the plug-in closed it
    int64_t errorsShown = 0;  ///< by then
    bool isDisabled = false;  ///< by its last answer up to the reopening's tick
    bool isNew = false;       ///< the plug-in may not have seen its path
  };
  struct Activated {
    std::string path;
    std::set<std::string> fonts;  ///< of the project, those that were active afterwards
    int64_t failures = 0;         ///< when the font manager activated them
  };

  void takeChange(const ProjectChange& change);
  void takeActivation(const std::vector<Argument>& fields, bool isFaulty);
  void letTimeGoBy();
  void check();
  void checkProjectIsOpen();
  void checkFonts();
  void checkDialogsAreSeen();
  void checkDocumentsAreToldOf();

  Host* mHost = nullptr;
  bool mInitialized = false;         ///< the plug-in has started
  bool mEnabled = false;             ///< what the framework said last
  std::string mDocument;             ///< the path that the framework was told of last
  int64_t mDocumentsSaved = 0;       ///< how many calls told the framework of one
  int64_t mUsersTick = -1;           ///< after which the user last changed projects
  int64_t mUsersFailures = 0;        ///< of calls until then
  std::optional<Closed> mClosed;     ///< by the plug-in, and not opened again
  std::optional<Activated> mLatest;  ///< for an open clean project, and nothing came between
};

}  // namespace host
