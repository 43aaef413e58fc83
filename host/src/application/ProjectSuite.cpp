#include <fmt/format.h>

#include <filesystem>

#include "Host.h"
#include "SuiteTables.h"

namespace host {
namespace {

A_Err GetNumProjects(A_long* count) {
  if (const A_Err fault = Fault("AEGP_GetNumProjects")) return fault;
  *count = 1;
  return A_Err_NONE;
}

A_Err GetProjectByIndex(A_long index, AEGP_ProjectH* project) {
  if (const A_Err fault = Fault("AEGP_GetProjectByIndex")) return fault;
  if (index != 0) return A_Err_GENERIC;
  *project = TheHost().project().handle();
  return A_Err_NONE;
}

A_Err GetProjectPath(AEGP_ProjectH project, AEGP_MemHandle* path) {
  if (const A_Err fault = Fault("AEGP_GetProjectPath")) return fault;
  if (project != TheHost().project().handle()) return A_Err_GENERIC;
  *path = TheHost().memory.make(TheHost().project().reportedPath);
  return A_Err_NONE;
}

A_Err ProjectIsDirty(AEGP_ProjectH project, A_Boolean* dirty) {
  if (const A_Err fault = Fault("AEGP_ProjectIsDirty")) return fault;
  if (project != TheHost().project().handle()) return A_Err_GENERIC;
  *dirty = TheHost().project().dirty ? 1 : 0;
  return A_Err_NONE;
}

A_Err NewProject(AEGP_ProjectH* project) {
  if (const A_Err fault = Fault("AEGP_NewProject")) return fault;
  TheHost().timeline.add(Actor::plugIn, "closes the project for a new one");
  TheHost().newProject();
  *project = TheHost().project().handle();
  return A_Err_NONE;
}

A_Err OpenProjectFromPath(const A_UTF16Char* path, AEGP_ProjectH* project) {
  if (const A_Err fault = Fault("AEGP_OpenProjectFromPath")) return fault;
  std::u16string text;
  for (; *path; ++path) text += static_cast<char16_t>(*path);
  std::string opened;
  try {
    opened = std::filesystem::path(text).string();
  } catch (const std::exception&) {
    TheHost().timeline.add(Actor::plugIn, "asks for a project whose path isn't UTF-16");
    return A_Err_GENERIC;
  }
  TheHost().timeline.add(Actor::plugIn, fmt::format("asks for the project {}", opened));
  if (const A_Err result = TheHost().openProject(opened)) return result;
  *project = TheHost().project().handle();
  return A_Err_NONE;
}

}  // namespace

const AEGP_ProjSuite6 kProjSuite6{
    .AEGP_GetNumProjects = GetNumProjects,
    .AEGP_GetProjectByIndex = GetProjectByIndex,
    NOT_SUPPLIED(AEGP_GetProjectName),
    .AEGP_GetProjectPath = GetProjectPath,
    NOT_SUPPLIED(AEGP_GetProjectRootFolder),
    NOT_SUPPLIED(AEGP_SaveProjectToPath),
    NOT_SUPPLIED(AEGP_GetProjectTimeDisplay),
    NOT_SUPPLIED(AEGP_SetProjectTimeDisplay),
    .AEGP_ProjectIsDirty = ProjectIsDirty,
    NOT_SUPPLIED(AEGP_SaveProjectAs),
    .AEGP_NewProject = NewProject,
    .AEGP_OpenProjectFromPath = OpenProjectFromPath,
    NOT_SUPPLIED(AEGP_GetProjectBitDepth),
    NOT_SUPPLIED(AEGP_SetProjectBitDepth),
};

}  // namespace host
