#include "Activation.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "TextFile.h"
#include "User.h"

namespace host {
namespace {

constexpr char kState[] = "activation";
constexpr int64_t kTicks = 24;
// The framework is asked again after this many seconds.
constexpr int64_t kSecondsToAskAgain = 10;
// From the tick on which the plug-in closes a project.
constexpr int64_t kTicksToReopening = 9;
// Enough for a process that begins with the first one.
constexpr int kTicksToSettle = 30;
constexpr char kProbe[] = "Is the activation over?";
constexpr char kProbeProject[] = "projects/saved at the end.aep";

std::string ValueOf(const Call& call, std::string_view name) {
  const std::string* const value = FindLast(call.arguments, name);
  return value ? *value : "";
}

}  // namespace

void Activation::begin(Host& host) {
  mHost = &host;
  host.projectChanged = [this](const ProjectChange& change) { takeChange(change); };
  host.afterTick = [this] { endInTime(); };
  host.timeline.observer = [this](const Event& entry) { takeEntry(entry); };
  host.timeline.setState(kState, "0");
}

void Activation::takeChange(const ProjectChange& change) {
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

// Step 1 tells the framework of the document, step 3 has the host scan the fonts, and step 10 opens
// the project again. The host's entries show the latter two.
void Activation::takeEntry(const Event& entry) {
  if (!mBegan) return;
  if (entry.call.function == "AEGP_UpdateFontList") mHost->timeline.setState(kState, "3");
  if (entry.call.function == "AEGP_OpenProjectFromPath") mHost->timeline.setState(kState, "10");
}

void Activation::take(const Call& call, bool isFaulty) {
  if (call.function == "InitializeTamberlinkInterface") {
    mInitialized = true;
  } else if (call.function == "PluginIsEnabled") {
    takeEnabled(call);
  } else if (call.function == "InvokeCommandDialog") {
    // As a call that fails: the activation that runs is lost.
    if (mBegan && ValueOf(call, "start") == "true") mHost->tellFailure(call.function);
  } else if (call.function == "HandleCreateNewDocument" || call.function == "SetPathForDocument" ||
             call.function == "HandleSaveDocument") {
    mToldOfSave = true;
  } else if (call.function == "HandleOpenExistingDocument") {
    noteStart();
    takeDocument(call, isFaulty);
  } else if (call.function == "ActivateChosenFonts") {
    takeDocument(call, isFaulty);
  }
}

void Activation::takeEnabled(const Call& call) {
  mEnabled = ValueOf(call, "enabled") == "true";
  mHost->timeline.setState("enabled", *mEnabled ? "true" : "false");
  if (!*mEnabled) mLatest.reset();
  const bool isInTime = mClosed && mHost->timeline.tick <= mClosed->tick + kTicksToReopening;
  if (isInTime) mClosed->isDisabled = !*mEnabled;
}

// A document told of twice on one tick is one activation.
void Activation::noteStart() {
  const int64_t tick = mHost->timeline.tick;
  if (std::exchange(mBegan, tick) == tick) return;
  // In case that step 1 of another activation was the last.
  mHost->timeline.setState(kState, "0");
  mHost->timeline.setState(kState, "1");
}

// A plug-in that is disabled takes no step, and so doesn't end an activation.
void Activation::endInTime() {
  if (!mBegan || mHost->timeline.tick < *mBegan + kTicks || mEnabled == false) return;
  mBegan.reset();
  mHost->timeline.setState(kState, "0");
}

void Activation::takeDocument(const Call& call, bool isFaulty) {
  mDocument = mHost->inFolder(ValueOf(call, "path"));
  if (isFaulty) return mLatest.reset();
  // The sign is that of no font.
  if (ValueOf(call, "count") == "0") return;
  const Project& project = mHost->project();
  if (mDocument != project.path || project.dirty) return mLatest.reset();
  const std::vector<std::string> active = ReadLines(mHost->inFolder("active-fonts"));
  mLatest = Activated{project.path, {}, mHost->failures};
  for (const std::string& font : project.fonts) {
    if (std::ranges::find(active, font) != active.end()) mLatest->fonts.insert(font);
  }
}

void Activation::settle() {
  mHost->faults.pause(true);
  WriteLines(mHost->inFolder("framework-state"), {});
  mHost->timeline.add(Actor::session, "all works again, and time goes by");
  mHost->advanceTime(kSecondsToAskAgain);
  for (int i = 0; i < kTicksToSettle; ++i) mHost->idle();
  checkProjectIsOpen();
  checkFonts();
  if (mInitialized && mEnabled == true) {
    checkDialogsAreSeen();
    checkDocumentsAreToldOf();
  }
  mHost->faults.pause(false);
}

void Activation::checkProjectIsOpen() {
  if (!mClosed || mHost->errorsShown > mClosed->errorsShown) return;
  const auto [detail, words] =
      mClosed->isNew        ? std::pair{"new path", ", whose path was new"}
      : mClosed->isDisabled ? std::pair{"disabled", ", and was disabled when the reopening was due"}
                            : std::pair{"", ""};
  mHost->report(Finding::projectLeftClosed,
                fmt::format("the plug-in closed {}{}", mClosed->path, words), {{}, detail, {}});
}

void Activation::checkFonts() {
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
void Activation::checkDocumentsAreToldOf() {
  mToldOfSave = false;
  mHost->editProject();
  mHost->idle();
  SaveAs(*mHost, kProbeProject);
  mHost->idle();
  mHost->timeline.drain();
  if (mToldOfSave) return;
  mHost->report(
      Finding::activationNeverEnds,
      fmt::format("the framework isn't told of a saved project {} ticks after the last step",
                  kTicksToSettle),
      {{}, "saved project", {}});
}

// While a process runs, the plug-in doesn't look at the host's dialogs. Otherwise it names each one
// on its standard output.
void Activation::checkDialogsAreSeen() {
  mHost->showDialog(kProbe);
  mHost->timeline.drain();
  const std::vector<std::string>& lines = mHost->timeline.record.stdoutLines;
  const bool isSeen =
      std::ranges::any_of(lines, [](const std::string& line) { return line.ends_with(kProbe); });
  if (isSeen) return;
  mHost->report(
      Finding::activationNeverEnds,
      fmt::format("the plug-in doesn't see a dialog {} ticks after the last step", kTicksToSettle),
      {{}, "dialog", {}});
}

}  // namespace host
