#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Event.h"
#include "FlightRecord.h"
#include "TextFile.h"

// The events of a session in order: for the process that waits, and as a record for the
// expectations.

namespace host {

/// An output of the process that plays a session.
struct Output {
  const char* file;  ///< in the session folder, which takes it
  const char* says;  ///< before each line on the timeline
};

/// Standard output and standard error.
inline constexpr std::array<Output, 2> kOutputs{Output{".stdout", "prints: "},
                                                Output{".stderr", "writes to standard error: "}};

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
  static constexpr size_t kMaxArguments = 7;

  std::string_view function;
  std::array<Value, kMaxArguments> arguments{};
  size_t count = 0;  ///< of the arguments
};

/// Returns the text of an argument. Of a pointer it says only whether it is null: its value is
/// another in every run.
std::string TextOf(const RunningCall::Value& value);

/// Tells events, in lines of JSON, to the process that waits. Before each it takes in what the
/// plug-in and others have written since, so that the order is right.
class Timeline {
 public:
  /// Writes to `pipe`, which it doesn't own. Redirects the standard output and error of this
  /// process into the timeline. The working directory must be the session folder. `flight` is told
  /// how much was taken in, and doesn't count the time that the other process needs.
  void begin(int pipe, FlightRecord& flight);
  /// Returns an event of this moment, to be added or sent. For the main thread.
  Event event(EventKind kind, Actor actor) const;
  /// Returns the host function that is running, if any.
  Call runningCall() const { return call ? describe(*call) : Call(); }
  /// Adds an event, with its value as `shortenPaths` leaves it.
  void add(Event event);
  /// Adds an entry, which comes from the host function that is running.
  void add(Actor actor, std::string_view text);
  /// Adds a call of the plug-in's with what it answered.
  void addCall(const RunningCall& running, int64_t result);
  /// Adds what came of the expectation at this place in the session file. It is met if there is no
  /// difference. The judge finds the difference if the key is about facts: from `texts`, which they
  /// have to have.
  void addExpectation(std::string_view key, std::string_view place, std::string difference,
                      std::optional<std::vector<std::string>> texts = {});
  /// Notes a value from now on, if it is another than before.
  void setState(const std::string& name, std::string value);
  /// Tells a fact that no reader of the timeline sees, at once.
  void tell(EventKind kind, std::string_view text = {}) const;
  /// Sends an event, at once. Sends nothing before `begin`, and in a process that the plug-in has
  /// forked. For any thread.
  void send(const Event& event) const;
  /// Takes in what was written. Cheap if there is nothing new.
  void drain();
  /// Hears that the process is about to write to an output, and takes in what it has written to the
  /// other one, so that their order is right. For any thread.
  void beginOutput(size_t output);
  /// Begins a hook, before the flight record says so. Nothing is sent of one in which nothing
  /// happens.
  void beginHook(std::string_view name);
  /// Begins a dialog, within the hook that is running.
  void beginDialog(std::string_view title);
  /// Ends the hook or the dialog that began last. `shown` is for a dialog.
  void endLast(std::optional<bool> shown = {});
  /// Ends all hooks and dialogs.
  void endAll();
  /// Makes paths in the session folder relative to it.
  void shortenPaths(std::string& text) const { ReplaceAll(text, mFolderPrefix, ""); }

  int64_t tick = 0;                   ///< 0 before the first idle tick
  const RunningCall* call = nullptr;  ///< the innermost host function that is running, if any
  Record record;
  /// Adds its own entries each time the timeline takes in what was written.
  std::function<void()> source = [] {};
  /// Sees each entry that was added.
  std::function<void(const Event&)> observer = [](const Event&) {};

 private:
  struct Span {
    Actor actor;
    const char* what;  ///< `kHook` or `kDialog`
    std::string name;
    const char* outerHook;         ///< in which it began
    const RunningCall* outerCall;  ///< in which it began, if any
    bool isSent = false;           ///< its begin
  };

  void takeOutputs();
  void takeLines(size_t output, const std::vector<std::string>& lines);
  Call describe(const RunningCall& running) const;
  Event spanEvent(EventKind kind, const Span& span) const;
  void sendBegins();

  int mPipe = -1;
  mutable std::mutex mPipeMutex;
  FlightRecord* mFlight = nullptr;
  std::vector<Span> mSpans;  ///< those that run, the innermost last
  std::map<std::string, std::string> mStates;
  std::string mFolderPrefix;
  bool mDraining = false;
  std::atomic<size_t> mLastOutput{0};  ///< that was written
  std::array<GrowingFile, kOutputs.size()> mOutputs;
};

}  // namespace host
