#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Everything that a session can find wrong, each with a name that the command line knows.

namespace host {

enum class Level { warning, error };

enum class Finding {
  expectation,
  setup,
  hookError,
  userReport,
  exception,
  crash,
  timeout,
  processEnded,
  dialogNeverBegan,
  hostCommandHandled,
  notSupplied,
  nullArgument,
  badArgument,
  unknownHandle,
  staleProject,
  wrongPluginId,
  wrongThread,
  unknownCommand,
  unknownMenu,
  enabledOutsideHook,
  lateHook,
  registeredTwice,
  calledTooLate,
  threadLeft,
  nestedTooDeep,
  releasedSuite,
  suiteReleasedTooOften,
  suiteLeaked,
  lockedHandleFreed,
  unlockedTooOften,
  handleLeaked,
  unknownBlock,
  blockLeaked,
  overrun,
  unbalancedUndoGroup,
  unsavedWorkLost,
  projectLeftClosed,
  fontStillMissing,
  activationNeverEnds,
};

/// Properties of a kind of finding.
enum : unsigned {
  /// A session can accept it: it doesn't keep the session from going on, and isn't what the session
  /// itself says.
  kAcceptable = 1,
  /// A tolerant session excuses it if an error that the host has answered may be its cause.
  kExcusable = 2,
  /// Another finding is often its cause, and stands before it.
  kFollows = 4,
};

struct FindingKind {
  Finding finding;
  std::string_view name;
  Level level;
  std::string_view expectKey;  ///< of an `expect` that can name it; empty for none
  unsigned properties;
  std::string_view sentence;

  constexpr bool has(unsigned property) const { return (properties & property) != 0; }
};

/// Every kind of finding, in the order of the enumeration.
inline constexpr std::array kFindingKinds{
    FindingKind{Finding::expectation, "expectation", Level::error, "", kFollows,
                "The session expects something else."},
    FindingKind{Finding::setup, "setup", Level::error, "", 0,
                "A fault, an answer or a known issue of the session was never used, or a step "
                "can't be played."},
    FindingKind{Finding::hookError, "hook-error", Level::error, "errors",
                kAcceptable | kExcusable | kFollows,
                "A hook or the entry point returns an error, which the host shows to the user."},
    FindingKind{Finding::userReport, "user-report", Level::error, "reports",
                kAcceptable | kExcusable | kFollows,
                "The plug-in reports something to the user that the session doesn't expect."},
    FindingKind{Finding::exception, "exception", Level::error, "", 0,
                "An exception leaves the plug-in. The host can't catch it."},
    FindingKind{Finding::crash, "crash", Level::error, "", 0,
                "The process crashes in the plug-in."},
    FindingKind{Finding::timeout, "timeout", Level::error, "", 0,
                "A call of the plug-in, or the host itself, takes longer than the time limit."},
    FindingKind{Finding::processEnded, "process-ended", Level::error, "", 0,
                "The plug-in ends the host's process."},
    FindingKind{
        Finding::dialogNeverBegan, "dialog-never-began", Level::error, "", kAcceptable,
        "A modal session of the host doesn't begin, because the plug-in doesn't pass it on."},
    FindingKind{Finding::hostCommandHandled, "host-command-handled", Level::warning, "",
                kAcceptable,
                "The plug-in handles a command of the host's own, such as save or quit."},
    FindingKind{Finding::notSupplied, "not-supplied", Level::error, "not supplied", kAcceptable,
                "The plug-in calls a function that aegp-host doesn't supply."},
    FindingKind{Finding::nullArgument, "null-argument", Level::error, "findings", kAcceptable,
                "A required pointer argument of a host function is null."},
    FindingKind{
        Finding::badArgument, "bad-argument", Level::error, "findings", kAcceptable,
        "An argument of a host function, or a buffer for the framework, is out of its range."},
    FindingKind{Finding::unknownHandle, "unknown-handle", Level::error, "findings", kAcceptable,
                "A handle isn't one of the host's, or was freed before."},
    FindingKind{Finding::staleProject, "stale-project", Level::error, "findings", kAcceptable,
                "A project handle is used after its project was closed."},
    FindingKind{Finding::wrongPluginId, "wrong-plugin-id", Level::error, "findings", kAcceptable,
                "The plug-in passes an id that the host didn't give to it."},
    FindingKind{Finding::wrongThread, "wrong-thread", Level::error, "", kAcceptable,
                "The plug-in calls the host from another thread than the main one."},
    FindingKind{Finding::unknownCommand, "unknown-command", Level::error, "findings", kAcceptable,
                "A command isn't from AEGP_GetUniqueCommand, or no menu item has it."},
    FindingKind{Finding::unknownMenu, "unknown-menu", Level::error, "findings", kAcceptable,
                "A menu item is inserted into a menu that the host doesn't have."},
    FindingKind{Finding::enabledOutsideHook, "enabled-outside-hook", Level::warning, "findings",
                kAcceptable,
                "A menu item is enabled outside an update-menu hook, where it has no effect."},
    FindingKind{Finding::lateHook, "late-hook", Level::error, "findings", kAcceptable,
                "A hook is registered after the entry point has returned."},
    FindingKind{Finding::registeredTwice, "registered-twice", Level::warning, "findings",
                kAcceptable, "The same hook or menu command is registered twice."},
    FindingKind{Finding::calledTooLate, "called-too-late", Level::warning, "findings", kAcceptable,
                "A function of the host that doesn't give something back is called after the host "
                "has shut down."},
    FindingKind{Finding::threadLeft, "thread-left", Level::warning, "", kAcceptable,
                "A thread of the plug-in still runs when its module has been finalised."},
    FindingKind{Finding::nestedTooDeep, "nested-too-deep", Level::error, "findings", kAcceptable,
                "A hook has the host call hooks again, within each other, without end."},
    FindingKind{Finding::releasedSuite, "released-suite", Level::error, "findings", kAcceptable,
                "A function of a suite is called while the suite isn't acquired."},
    FindingKind{Finding::suiteReleasedTooOften, "suite-released-too-often", Level::error,
                "findings", kAcceptable, "A suite is released more often than it was acquired."},
    FindingKind{Finding::suiteLeaked, "suite-leaked", Level::error, "", kAcceptable,
                "A suite that was acquired is never released."},
    FindingKind{Finding::lockedHandleFreed, "locked-handle-freed", Level::error, "findings",
                kAcceptable, "A memory handle is freed while it is locked."},
    FindingKind{Finding::unlockedTooOften, "unlocked-too-often", Level::error, "findings",
                kAcceptable, "A memory handle is unlocked more often than it was locked."},
    FindingKind{Finding::handleLeaked, "handle-leaked", Level::error, "", kAcceptable,
                "A memory handle is never freed, or stays locked."},
    FindingKind{Finding::unknownBlock, "unknown-block", Level::error, "findings", kAcceptable,
                "A block of the basic suite is freed twice, or isn't one of the host's."},
    FindingKind{Finding::blockLeaked, "block-leaked", Level::error, "", kAcceptable,
                "A block of the basic suite is never freed."},
    FindingKind{Finding::overrun, "overrun", Level::error, "findings", kAcceptable,
                "The plug-in writes past the end of a memory handle or a block."},
    FindingKind{
        Finding::unbalancedUndoGroup, "unbalanced-undo-group", Level::error, "findings",
        kAcceptable,
        "An undo group is ended that wasn't started, or isn't ended when the hook returns."},
    FindingKind{Finding::unsavedWorkLost, "unsaved-work-lost", Level::error, "findings",
                kAcceptable, "The plug-in closes or replaces a project that has unsaved changes."},
    FindingKind{Finding::projectLeftClosed, "project-left-closed", Level::error, "", kAcceptable,
                "The plug-in closes a project, doesn't open it again, and the user sees no error."},
    FindingKind{Finding::fontStillMissing, "font-still-missing", Level::error, "", kAcceptable,
                "A font that the font manager activated for the open project is still missing."},
    FindingKind{Finding::activationNeverEnds, "activation-never-ends", Level::error, "",
                kAcceptable,
                "The plug-in still leaves the host's dialogs alone long after an activation."},
};

/// A finding that a session accepts, because the plug-in is meant to act so. An empty name fits
/// any.
struct KnownIssue {
  Finding finding = Finding::expectation;
  std::string function;
  std::string detail;
  std::vector<std::string> after;  ///< one of these calls has to have failed before; empty for none
  std::string reason;
};

/// Returns what is known of the finding.
constexpr const FindingKind& KindOf(Finding finding) {
  return kFindingKinds[static_cast<size_t>(finding)];
}

/// Returns the finding of that name, or none.
constexpr std::optional<Finding> FindingNamed(std::string_view name) {
  for (const FindingKind& kind : kFindingKinds) {
    if (kind.name == name) return kind.finding;
  }
  return {};
}

namespace detail {
constexpr bool FindingsAreInOrder() {
  for (size_t i = 0; i < kFindingKinds.size(); ++i) {
    if (static_cast<size_t>(kFindingKinds[i].finding) != i) return false;
  }
  return static_cast<size_t>(Finding::activationNeverEnds) + 1 == kFindingKinds.size();
}
static_assert(FindingsAreInOrder());
}  // namespace detail

}  // namespace host
