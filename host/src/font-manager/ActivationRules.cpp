#include "ActivationRules.h"

#include <fmt/format.h>

#include <algorithm>

#include "TextFile.h"
#include "User.h"

namespace host {
namespace {

// The framework is asked again after this many seconds.
constexpr int64_t kSecondsToAskAgain = 10;
// From the tick on which the plug-in closes a project.
constexpr int64_t kTicksToReopening = 9;
// Enough for a process that begins with the first one.
constexpr int kTicksToSettle = 30;
constexpr char kProbe[] = "Is the activation over?";
constexpr char kProbeProject[] = "projects/saved at the end.aep";

std::string FieldOf(const std::vector<Argument>& fields, std::string_view name) {
  const std::string* const value = FindLast(fields, name);
  return value ? *value : "";
}

}  // namespace

void ActivationRules::begin(Host& host) {
  mHost = &host;
  host.projectChanged = [this](const ProjectChange& change) { takeChange(change); };
}

void ActivationRules::takeChange(const ProjectChange& change) {
  if (!change.byPlugin) {
    mUsersTick = mHost->timeline.tick;
    mUsersFailures = mHost->failures;
  }
  if (change.isSave) return;
  if (!change.byPlugin) {
    mClosed.reset();
    mLatest.reset();
  } else if (change.opened.empty() && !change.closed.empty()) {
    const int64_t tick = mHost->timeline.tick;
    // No idle hook has seen it yet, or a call failed that would have told.
    const bool isUnseen = mUsersTick >= tick - 1 || mHost->failures > mUsersFailures;
    const bool isNew = isUnseen && change.closed != mDocument;
    mClosed = Closed{change.closed, tick, mHost->errorsShown, false, isNew};
  } else if (mClosed && change.opened == mClosed->path) {
    mClosed.reset();
  }
}

void ActivationRules::take(const std::string& operation, const std::vector<Argument>& fields,
                           bool isFaulty, bool isRunning) {
  if (operation == "InitializeTamberlinkInterface") {
    mInitialized = true;
  } else if (operation == "PluginIsEnabled") {
    mEnabled = FieldOf(fields, "enabled") == "true";
    if (!mEnabled) mLatest.reset();
    const bool isInTime = mClosed && mHost->timeline.tick <= mClosed->tick + kTicksToReopening;
    if (isInTime) mClosed->isDisabled = !mEnabled;
  } else if (operation == "InvokeCommandDialog") {
    // As a call that fails: the activation that runs is lost.
    if (isRunning && FieldOf(fields, "start") == "true") mHost->countFailure(operation);
  } else if (operation == "HandleCreateNewDocument" || operation == "SetPathForDocument" ||
             operation == "HandleSaveDocument") {
    ++mDocumentsSaved;
  } else if (operation == "HandleOpenExistingDocument" || operation == "ActivateChosenFonts") {
    mDocument = mHost->inFolder(FieldOf(fields, "path"));
    takeActivation(fields, isFaulty);
  }
}

void ActivationRules::takeActivation(const std::vector<Argument>& fields, bool isFaulty) {
  if (isFaulty) return mLatest.reset();
  // The sign is that of no font.
  if (FieldOf(fields, "count") == "0") return;
  const Project& project = mHost->project();
  std::string path = project.path;
  mHost->timeline.shortenPaths(path);
  if (FieldOf(fields, "path") != path || project.dirty) return mLatest.reset();
  const std::vector<std::string> active = ReadLines(mHost->inFolder("active-fonts"));
  mLatest = Activated{project.path, {}, mHost->failures};
  for (const std::string& font : project.fonts) {
    if (std::find(active.begin(), active.end(), font) != active.end()) mLatest->fonts.insert(font);
  }
}

void ActivationRules::letTimeGoBy() {
  WriteLines(mHost->inFolder("framework-state"), {});
  mHost->timeline.add(Actor::session, "all works again, and time goes by");
  mHost->advanceTime(kSecondsToAskAgain);
  for (int i = 0; i < kTicksToSettle; ++i) mHost->idle();
}

void ActivationRules::check() {
  checkProjectIsOpen();
  checkFonts();
  mDocumentsSaved = 0;
  if (!mInitialized || !mEnabled) return;
  checkDialogsAreSeen();
  checkDocumentsAreToldOf();
}

void ActivationRules::settle() {
  mHost->faults.pause(true);
  letTimeGoBy();
  check();
  mHost->faults.pause(false);
}

void ActivationRules::checkProjectIsOpen() {
  if (!mClosed || mHost->errorsShown > mClosed->errorsShown) return;
  const std::string circumstance = mClosed->isNew        ? ", whose path was new"
                                   : mClosed->isDisabled ? ", and was disabled when the reopening "
                                                           "was due"
                                                         : "";
  mHost->report(Finding::projectLeftClosed, "the plug-in closed " + mClosed->path + circumstance,
                {{},
                 mClosed->isNew        ? "new path"
                 : mClosed->isDisabled ? "disabled"
                                       : "",
                 {}});
}

void ActivationRules::checkFonts() {
  // A call that failed since may be the reason.
  if (!mLatest || mHost->failures > mLatest->failures) return;
  if (mHost->project().path != mLatest->path) return;
  for (const std::string& font : mHost->project().missingFonts) {
    if (!mLatest->fonts.contains(font)) continue;
    mHost->report(Finding::fontStillMissing,
                  fmt::format("{} is active, and {} lacks it", font, mLatest->path),
                  {{}, font, {}});
  }
}

// While a process runs, the plug-in tells the framework of no document. The one that is saved here
// is told of by several calls, any of which the framework may lack.
void ActivationRules::checkDocumentsAreToldOf() {
  mHost->editProject();
  mHost->idle();
  SaveAs(*mHost, kProbeProject);
  mHost->idle();
  mHost->timeline.drain();
  if (mDocumentsSaved > 0) return;
  mHost->report(
      Finding::activationNeverEnds,
      fmt::format("the framework isn't told of a saved project {} ticks after the last step",
                  kTicksToSettle),
      {{}, "saved project", {}});
}

// While a process runs, the plug-in doesn't look at the host's dialogs. Otherwise it names each one
// on its standard output.
void ActivationRules::checkDialogsAreSeen() {
  mHost->showDialog(kProbe);
  mHost->timeline.drain();
  const std::vector<std::string>& lines = mHost->timeline.record.stdoutLines;
  const bool isSeen = std::any_of(lines.begin(), lines.end(),
                                  [](const std::string& line) { return line.ends_with(kProbe); });
  if (isSeen) return;
  mHost->report(
      Finding::activationNeverEnds,
      fmt::format("the plug-in doesn't see a dialog {} ticks after the last step", kTicksToSettle),
      {{}, "dialog", {}});
}

}  // namespace host
