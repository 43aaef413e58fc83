#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "Event.h"
#include "Host.h"

namespace host {

/// The font activation process of the plug-in, seen from outside: by the calls of the framework and
/// by what happens to the project. Notes its steps on the timeline, and knows what has to hold
/// after it, whatever the user, the host and the font manager did.
class Activation {
 public:
  /// Begins to watch the host. The host outlives this object.
  void begin(Host& host);
  /// Takes a call of the framework that is on the timeline. `isFaulty` says that the session has
  /// changed its results.
  void take(const Call& call, bool isFaulty);
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
  void takeEntry(const Event& entry);
  void takeEnabled(const Call& call);
  void takeDocument(const Call& call, bool isFaulty);
  void noteStart();
  void endInTime();
  void checkProjectIsOpen();
  void checkFonts();
  void checkDialogsAreSeen();
  void checkDocumentsAreToldOf();

  Host* mHost = nullptr;
  bool mInitialized = false;         ///< the plug-in has started
  std::optional<bool> mEnabled;      ///< what the framework said last, if it was asked
  std::optional<int64_t> mBegan;     ///< tick of step 1, while an activation runs
  std::string mDocument;             ///< the path that the framework was told of last
  bool mToldOfSave = false;          ///< the framework, since it was last looked at
  int64_t mUsersTick = -1;           ///< when the user last changed or saved the project
  int64_t mUsersFailures = 0;        ///< of calls until then
  std::optional<Closed> mClosed;     ///< by the plug-in, and not opened again
  std::optional<Activated> mLatest;  ///< for an open clean project, and nothing came between
};

}  // namespace host
