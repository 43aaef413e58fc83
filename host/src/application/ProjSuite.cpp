#include <fmt/format.h>

#include <cstring>
#include <filesystem>

#include "SuiteFunction.h"

namespace host {

namespace {

// How much the caller's buffer for a name holds isn't known here. No name is longer than this, with
// its NUL.
constexpr size_t kNameSize = 48;

void GetNumProjects(Host& /*host*/, A_long* count) {
  *count = 1;
}

A_Err GetProjectByIndex(Host& host, A_long index, AEGP_ProjectH* project) {
  if (index != 0) {
    return host.misused(Finding::badArgument, fmt::format("there is no project {}", index));
  }
  *project = host.project().handle;
  return A_Err_NONE;
}

void GetProjectName(Host& host, AEGP_ProjectH, A_char* name) {
  const std::string& path = host.project().path;
  const std::string text =
      path.empty() ? "Untitled Project.aep" : std::filesystem::path(path).filename().string();
  // To the end of the buffer, so that a smaller one is noticed.
  std::memset(name, 0, kNameSize);
  text.copy(name, kNameSize - 1);
}

A_Err GetProjectPath(Host& host, AEGP_ProjectH, AEGP_MemHandle* path) {
  const std::u16string& text = host.project().pathForPlugin;
  const size_t size = (text.size() + 1) * sizeof(char16_t);
  const AEGP_MemHandle made = host.ledger.giveMemory(size, host.origin());
  if (!made) return A_Err_GENERIC;
  std::memcpy(*made, text.c_str(), size);
  *path = made;
  return A_Err_NONE;
}

void ProjectIsDirty(Host& host, AEGP_ProjectH, A_Boolean* dirty) {
  *dirty = host.project().dirty ? 1 : 0;
}

void NewProject(Host& host, AEGP_ProjectH* project) {
  host.timeline.add(Actor::plugIn, "closes the project for a new one");
  host.newProject();
  *project = host.project().handle;
}

A_Err OpenProjectFromPath(Host& host, const A_UTF16Char* path, AEGP_ProjectH* project) {
  if (host.refusesMoreHooks()) return A_Err_GENERIC;
  const std::optional<std::string> opened = ToUTF8(path);
  if (!opened) {
    host.timeline.add(Actor::plugIn, "asks for a project whose path isn't UTF-16");
    return A_Err_GENERIC;
  }
  host.timeline.add(Actor::plugIn, fmt::format("asks for the project {}", *opened));
  if (const A_Err result = host.openProject(*opened)) return result;
  *project = host.project().handle;
  return A_Err_NONE;
}

}  // namespace

A_Err CheckPointer(Host& host, AEGP_ProjectH project) {
  if (project == host.project().handle) return A_Err_NONE;
  return host.ledger.takenBack(Holding::project, project)
             ? host.misused(Finding::staleProject, "the project was closed")
             : host.misused(Finding::unknownHandle, "there is no such project");
}

const AEGP_ProjSuite6 kProjSuite6{
    SUPPLIED(kProjSuite6, AEGP_GetNumProjects, GetNumProjects, "num_projPL"),
    SUPPLIED(kProjSuite6, AEGP_GetProjectByIndex, GetProjectByIndex, "proj_indexL", "projPH"),
    SUPPLIED(kProjSuite6, AEGP_GetProjectName, GetProjectName, "projH", "nameZ"),
    SUPPLIED(kProjSuite6, AEGP_GetProjectPath, GetProjectPath, "projH", "unicode_pathPH"),
    NOT_SUPPLIED(kProjSuite6, AEGP_GetProjectRootFolder, AEGP_SaveProjectToPath,
                 AEGP_GetProjectTimeDisplay, AEGP_SetProjectTimeDisplay),
    SUPPLIED(kProjSuite6, AEGP_ProjectIsDirty, ProjectIsDirty, "projH", "is_dirtyPB"),
    NOT_SUPPLIED(kProjSuite6, AEGP_SaveProjectAs),
    SUPPLIED(kProjSuite6, AEGP_NewProject, NewProject, "new_projectPH"),
    SUPPLIED(kProjSuite6, AEGP_OpenProjectFromPath, OpenProjectFromPath, "pathZ", "projectPH"),
    NOT_SUPPLIED(kProjSuite6, AEGP_GetProjectBitDepth, AEGP_SetProjectBitDepth),
};

}  // namespace host
