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
    return utf8::utf16to8(std::u16string(text, end));
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
  mProject.handle = ledger.giveProject();
  projectChanged(change);
}

void Host::reportLostWork(const ProjectChange& change) {
  const std::string closed = change.closed.empty() ? "a project without a path" : change.closed;
  const bool hadClosed = mPluginHasClosed && !change.opened.empty();
  const std::string does =
      change.opened.empty() ? "closes" : fmt::format("opens {} in place of", change.opened);
  report(Finding::unsavedWorkLost,
         fmt::format("the plug-in {} {}, which has unsaved changes{}", does, closed,
                     hadClosed ? "; it had closed a project before" : ""),
         {timeline.runningCall().function, hadClosed ? "closed before" : "", {}});
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
  opened.pathForPlugin = std::filesystem::path(path).u16string();
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
  mProject.pathForPlugin = std::filesystem::path(path).u16string();
  mProject.dirty = false;
  timeline.add(Actor::host, fmt::format("has written {}", path));
  showProject();
  if (change.closed != change.opened) projectChanged(change);
}

}  // namespace host
