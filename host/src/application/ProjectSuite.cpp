#include <fmt/format.h>

#include <filesystem>

#include "Host.h"
#include "HostCall.h"
#include "SuiteTables.h"

namespace host {
namespace {

// How much the caller's buffer for a name holds isn't known here. No name is longer than this, with
// its NUL.
constexpr size_t kNameSize = 48;

A_Err GetNumProjects(A_long* count) {
  HostCall call(SuiteId::proj6, "AEGP_GetNumProjects", count);
  call.needs(count, "num_projPL");
  if (const A_Err error = call.error()) return error;
  *count = 1;
  return A_Err_NONE;
}

A_Err GetProjectByIndex(A_long index, AEGP_ProjectH* project) {
  HostCall call(SuiteId::proj6, "AEGP_GetProjectByIndex", int64_t{index}, project);
  call.needs(project, "projPH");
  if (index != 0) call.misused(Finding::badArgument, fmt::format("there is no project {}", index));
  if (const A_Err error = call.error()) return error;
  *project = TheHost().project().handle();
  return A_Err_NONE;
}

A_Err GetProjectName(AEGP_ProjectH project, A_char* name) {
  HostCall call(SuiteId::proj6, "AEGP_GetProjectName", project, static_cast<const void*>(name));
  call.needsProject(project);
  call.needs(name, "nameZ");
  if (const A_Err error = call.error()) return error;
  const std::string path = TheHost().project().path;
  const std::string text =
      path.empty() ? "Untitled Project.aep" : std::filesystem::path(path).filename().string();
  name[text.copy(name, kNameSize - 1)] = '\0';
  return A_Err_NONE;
}

A_Err GetProjectPath(AEGP_ProjectH project, AEGP_MemHandle* path) {
  HostCall call(SuiteId::proj6, "AEGP_GetProjectPath", project, path);
  call.needsProject(project);
  call.needs(path, "unicode_pathPH");
  if (const A_Err error = call.error()) return error;
  *path = TheHost().memory.make(TheHost().project().reportedPath,
                                TheHost().origin("AEGP_GetProjectPath"));
  return *path ? A_Err{A_Err_NONE} : A_Err{A_Err_GENERIC};
}

A_Err ProjectIsDirty(AEGP_ProjectH project, A_Boolean* dirty) {
  HostCall call(SuiteId::proj6, "AEGP_ProjectIsDirty", project, dirty);
  call.needsProject(project);
  call.needs(dirty, "is_dirtyPB");
  if (const A_Err error = call.error()) return error;
  *dirty = TheHost().project().dirty ? 1 : 0;
  return A_Err_NONE;
}

A_Err NewProject(AEGP_ProjectH* project) {
  HostCall call(SuiteId::proj6, "AEGP_NewProject", project);
  call.needs(project, "new_projectPH");
  if (const A_Err error = call.error()) return error;
  TheHost().timeline.add(Actor::plugIn, "closes the project for a new one");
  TheHost().newProject();
  *project = TheHost().project().handle();
  return A_Err_NONE;
}

A_Err OpenProjectFromPath(const A_UTF16Char* path, AEGP_ProjectH* project) {
  HostCall call(SuiteId::proj6, "AEGP_OpenProjectFromPath", path, project);
  call.needs(path, "pathZ");
  call.needs(project, "projectPH");
  call.needsDepthForHooks();
  if (const A_Err error = call.error()) return error;
  const std::optional<std::string> opened = ToUTF8(path);
  if (!opened) {
    TheHost().timeline.add(Actor::plugIn, "asks for a project whose path isn't UTF-16");
    return A_Err_GENERIC;
  }
  TheHost().timeline.add(Actor::plugIn, fmt::format("asks for the project {}", *opened));
  if (const A_Err result = TheHost().openProject(*opened)) {
    TheHost().noteAnswer(result);
    return result;
  }
  *project = TheHost().project().handle();
  return A_Err_NONE;
}

}  // namespace

const AEGP_ProjSuite6 kProjSuite6{
    .AEGP_GetNumProjects = GetNumProjects,
    .AEGP_GetProjectByIndex = GetProjectByIndex,
    .AEGP_GetProjectName = GetProjectName,
    .AEGP_GetProjectPath = GetProjectPath,
    NOT_SUPPLIED(proj6, AEGP_GetProjectRootFolder),
    NOT_SUPPLIED(proj6, AEGP_SaveProjectToPath),
    NOT_SUPPLIED(proj6, AEGP_GetProjectTimeDisplay),
    NOT_SUPPLIED(proj6, AEGP_SetProjectTimeDisplay),
    .AEGP_ProjectIsDirty = ProjectIsDirty,
    NOT_SUPPLIED(proj6, AEGP_SaveProjectAs),
    .AEGP_NewProject = NewProject,
    .AEGP_OpenProjectFromPath = OpenProjectFromPath,
    NOT_SUPPLIED(proj6, AEGP_GetProjectBitDepth),
    NOT_SUPPLIED(proj6, AEGP_SetProjectBitDepth),
};

}  // namespace host
