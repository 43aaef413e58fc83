#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Event.h"
#include "FlightRecord.h"
#include "TextFile.h"
#include "Wire.h"

// The events of a session in order: for the process that waits, and as a record for the
// expectations.

namespace host {

/// The names of the files in the session folder that take the output of the process.
inline constexpr char kStdoutFile[] = ".stdout";
inline constexpr char kStderrFile[] = ".stderr";

/// Returns the text for a line that the plug-in wrote to its standard output or error.
std::string StdoutText(std::string_view line);
std::string StderrText(std::string_view line);

/// What expectations compare with, since one last took it.
struct Record {
  std::vector<std::string> dialogsShown;  ///< titles of the dialogs that reached the user
  std::vector<std::string> activated;     ///< applications that the plug-in brought to the front
  std::vector<std::string> stdoutLines;
  std::vector<std::string> stderrLines;
  int64_t fontUpdates = 0;
};

/// A call of a host function that is under way. Borrows what the plug-in has passed, because most
/// calls never get to the timeline.
struct RunningCall {
  using Value = std::variant<int64_t, double, const char*, const void*>;
  static constexpr size_t kMostArguments = 7;

  std::string_view function;
  std::array<Value, kMostArguments> arguments{};
  size_t count = 0;  ///< of the arguments
};

/// Collects events. Before each entry it takes in what the plug-in and others have written since,
/// so that the order is right.
class Timeline {
 public:
  /// Sends events to `wire`. Redirects the standard output and error of this process into the
  /// timeline. The working directory must be the session folder. `flight` is told how much was
  /// taken in.
  void begin(const Wire& wire, FlightRecord& flight);
  /// Has `source` add its own entries each time the timeline takes in what was written.
  void addSource(std::function<void()> source) { mSources.push_back(std::move(source)); }
  /// Has `observer` see each entry that was added.
  void addObserver(std::function<void(const Event&)> observer) {
    mObservers.push_back(std::move(observer));
  }
  /// Adds an entry, which comes from the host function that is running.
  void add(Actor actor, std::string_view text);
  /// Adds a call of the plug-in's with what it answered.
  void addCall(const RunningCall& running, int64_t result, bool isSupplied);
  /// Adds what came of the expectation at this place in the session file. It is met if there is no
  /// difference.
  void addExpectation(std::string_view key, std::string_view place, std::string_view difference);
  /// Tells how far the process is. `text` is for one kind.
  void tell(EventKind kind, std::string text = {}) const;
  /// Tells a fact, after what was written before it.
  void addFact(Event fact);
  /// Takes in what was written. Cheap if there is nothing new.
  void drain();
  /// Does the same, and takes in unfinished lines of the plug-in's too.
  void drainRest();
  /// Adds an entry without taking in anything first. For sources.
  void show(Actor actor, std::string_view text, Call comesFrom = {});
  /// Notes a value from now on, if it is another than before. Takes in nothing first.
  void setState(const std::string& name, std::string value);
  /// Notes the step that begins, by its place in the session file.
  void beginStep(std::string_view place);
  /// Begins a hook. Nothing is sent of one in which nothing happens.
  void beginHook(std::string_view name);
  /// Begins a dialog, within the hook that is running.
  void beginDialog(std::string_view title);
  /// Ends the hook or the dialog that began last. `shown` is for a dialog.
  void endLast(Shown shown = Shown::unknown);
  /// Ends all hooks and dialogs.
  void endAll();
  /// Returns the head of what happens now, which comes from the host function that is running.
  EventHead head(Actor actor) const;
  /// Makes paths in the session folder relative to it.
  void shortenPaths(std::string& text) const { ReplaceAll(text, mFolderPrefix, ""); }

  int64_t tick = 0;                   ///< 0 before the first idle tick
  const RunningCall* call = nullptr;  ///< the innermost host function that is running, if any
  Record record;

 private:
  struct Span {
    SpanKind kind = SpanKind::hook;
    std::string name;
    bool sent = false;                       ///< its begin
    const RunningCall* outerCall = nullptr;  ///< in which it began
  };

  void takeLines(const std::vector<std::string>& out, const std::vector<std::string>& err);
  void takeStdoutLine(const std::string& line);
  void takeStderrLine(const std::string& line);
  EventHead headWithin(size_t spans, Actor actor) const;
  Event event(EventKind kind, Actor actor, size_t spans) const;
  Event event(EventKind kind, Actor actor) const { return event(kind, actor, mSpans.size()); }
  Call describe(const RunningCall& running) const;
  void sendBegins();
  void send(const Event& event) const;

  const Wire* mWire = nullptr;
  FlightRecord* mFlight = nullptr;
  std::string mPlace;
  std::vector<Span> mSpans;  ///< those that run, the innermost last
  std::map<std::string, std::string> mStates;
  std::string mFolderPrefix;
  GrowingFile mStdout;
  GrowingFile mStderr;
  std::vector<std::function<void()>> mSources;
  std::vector<std::function<void(const Event&)>> mObservers;
};

}  // namespace host
