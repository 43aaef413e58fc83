#include <fmt/format.h>
#include <utf8.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

#include "Host.h"
#include "TextFile.h"
#include "VirtualTime.h"

// What happens to the project.

namespace host {

std::optional<std::string> ToUTF8(const A_UTF16Char* text) {
  const A_UTF16Char* end = text;
  while (*end != 0) ++end;
  std::string utf8;
  try {
    utf8::utf16to8(text, end, std::back_inserter(utf8));
  } catch (const utf8::invalid_utf16&) {
    return {};
  }
  return utf8;
}

void Host::setProject(std::unique_ptr<Project> project) {
  mProject = std::move(project);
  mProject->handle = &mProjectSlots[mNextSlot];
  mNextSlot = (mNextSlot + 1) % mProjectSlots.size();
  ledger.give(Holding::project, mProject->handle, {"", mHook, timeline.tick});
}

void Host::replaceProject(std::unique_ptr<Project> project) {
  const ProjectChange change{mProject->path, project->path, *mHook != '\0'};
  if (change.byPlugin && mProject->dirty) reportLostWork(change);
  if (change.byPlugin) mPluginHasClosed = change.opened.empty();
  ledger.takeBack(Holding::project, mProject->handle);
  setProject(std::move(project));
  for (const auto& listener : mProjectListeners) listener(change);
}

void Host::reportLostWork(const ProjectChange& change) {
  const std::string closed = change.closed.empty() ? "a project without a path" : change.closed;
  const std::string function(timeline.call ? timeline.call->function : "");
  if (change.opened.empty()) {
    report(Finding::unsavedWorkLost,
           fmt::format("the plug-in closes {}, which has unsaved changes", closed),
           {function, {}, {}});
  } else {
    report(Finding::unsavedWorkLost,
           fmt::format("the plug-in opens {} in place of {}, which has unsaved changes{}",
                       change.opened, closed,
                       mPluginHasClosed ? "; it had closed a project before" : ""),
           {function, mPluginHasClosed ? "closed before" : "", {}});
  }
}

void Host::noteProject() {
  timeline.setState("project", mProject->path.empty() ? "none" : mProject->path);
  timeline.setState("dirty", mProject->dirty ? "true" : "false");
}

void Host::newProject() {
  replaceProject(std::make_unique<Project>());
  timeline.add(Actor::host, "has a new project without a path");
  noteProject();
}

void Host::editProject() {
  timeline.add(Actor::user, "edits the project");
  mProject->dirty = true;
  noteProject();
}

A_Err Host::openProject(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) {
    timeline.add(Actor::host, fmt::format("finds no project {}", path));
    return A_Err_GENERIC;
  }
  auto opened = std::make_unique<Project>();
  opened->path = path;
  opened->reportedPath = std::filesystem::path(path).u16string();
  opened->fonts = ReadLines(path);
  std::copy_if(opened->fonts.begin(), opened->fonts.end(), std::back_inserter(opened->missingFonts),
               [&](const std::string& font) { return !mKnownFonts.contains(font); });
  replaceProject(std::move(opened));
  if (mProject->missingFonts.empty()) {
    timeline.add(Actor::host, fmt::format("opens {} with all its fonts", path));
    noteProject();
    return A_Err_NONE;
  }
  timeline.add(Actor::host,
               fmt::format("opens {}, which lacks {}", path, Join(mProject->missingFonts, ", ")));
  noteProject();
  showMissingFontsDialog();
  return A_Err_NONE;
}

void Host::saveProject(const std::string& path) {
  WriteLines(path, mProject->fonts);
  SetModificationDate(path, VirtualNow());
  // `path` may be the project's own.
  const std::string before = mProject->path;
  mProject->path = path;
  mProject->reportedPath = std::filesystem::path(path).u16string();
  mProject->dirty = false;
  timeline.add(Actor::host, fmt::format("has written {}", path));
  noteProject();
  if (before == path) return;
  for (const auto& listener : mProjectListeners) listener({before, path, *mHook != '\0', true});
}

}  // namespace host
