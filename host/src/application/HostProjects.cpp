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
  try {
    std::string utf8;
    utf8::utf16to8(text, end, std::back_inserter(utf8));
    return utf8;
  } catch (const utf8::invalid_utf16&) {
    return {};
  }
}

void Host::replaceProject(Project project) {
  const ProjectChange change{mProject.path, project.path, isInPlugin()};
  if (change.byPlugin && mProject.dirty) reportLostWork(change);
  if (change.byPlugin) mPluginHasClosed = change.opened.empty();
  ledger.takeBack(Holding::project, mProject.handle);
  mProject = std::move(project);
  mProject.handle = &mProjectSlots[mNextSlot];
  mNextSlot = (mNextSlot + 1) % mProjectSlots.size();
  ledger.give(Holding::project, mProject.handle, {"", mFlight->hook, timeline.tick});
  projectChanged(change);
}

void Host::reportLostWork(const ProjectChange& change) {
  const std::string closed = change.closed.empty() ? "a project without a path" : change.closed;
  const bool hadClosed = mPluginHasClosed && !change.opened.empty();
  report(
      Finding::unsavedWorkLost,
      change.opened.empty()
          ? fmt::format("the plug-in closes {}, which has unsaved changes", closed)
          : fmt::format("the plug-in opens {} in place of {}, which has unsaved changes{}",
                        change.opened, closed, hadClosed ? "; it had closed a project before" : ""),
      {std::string(timeline.call ? timeline.call->function : ""),
       hadClosed ? "closed before" : "",
       {}});
}

void Host::showProject() {
  timeline.setState("project", mProject.path.empty() ? "none" : mProject.path);
  timeline.setState("dirty", mProject.dirty ? "true" : "false");
}

void Host::newProject() {
  replaceProject({});
  timeline.add(Actor::host, "has a new project without a path");
  showProject();
}

void Host::editProject() {
  timeline.add(Actor::user, "edits the project");
  mProject.dirty = true;
  showProject();
}

A_Err Host::openProject(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) {
    timeline.add(Actor::host, fmt::format("finds no project {}", path));
    return A_Err_GENERIC;
  }
  Project opened;
  opened.path = path;
  opened.reportedPath = std::filesystem::path(path).u16string();
  opened.fonts = ReadLines(path);
  std::copy_if(opened.fonts.begin(), opened.fonts.end(), std::back_inserter(opened.missingFonts),
               [&](const std::string& font) { return !mKnownFonts.contains(font); });
  replaceProject(std::move(opened));
  const std::vector<std::string>& missing = mProject.missingFonts;
  timeline.add(Actor::host, fmt::format("opens {}{}", path,
                                        missing.empty() ? " with all its fonts"
                                                        : ", which lacks " + Join(missing, ", ")));
  showProject();
  if (!missing.empty()) showDialog(mSettings.missingFontsTitle);
  return A_Err_NONE;
}

void Host::saveProject(const std::string& path) {
  WriteLines(path, mProject.fonts);
  SetModificationDate(path, VirtualNow());
  const ProjectChange change{mProject.path, path, isInPlugin(), true};
  mProject.path = path;
  mProject.reportedPath = std::filesystem::path(path).u16string();
  mProject.dirty = false;
  timeline.add(Actor::host, fmt::format("has written {}", path));
  showProject();
  if (change.closed != change.opened) projectChanged(change);
}

}  // namespace host
