#include <fmt/format.h>

#include <filesystem>

#include "SuiteFunction.h"

namespace host {
namespace {

// How much the caller's buffer for a name holds isn't known here. No name is longer than this, with
// its NUL.
constexpr size_t kNameSize = 48;

A_Err GetNumProjects(A_long* count) {
  *count = 1;
  return A_Err_NONE;
}

A_Err GetProjectByIndex(A_long index, AEGP_ProjectH* project) {
  if (index != 0) {
    return SuiteCall::current().misused(Finding::badArgument,
                                        fmt::format("there is no project {}", index));
  }
  *project = TheHost().project().handle;
  return A_Err_NONE;
}

A_Err GetProjectName(AEGP_ProjectH, A_char* name) {
  const std::string& path = TheHost().project().path;
  const std::string text =
      path.empty() ? "Untitled Project.aep" : std::filesystem::path(path).filename().string();
  // To the end of the buffer, so that a smaller one is noticed.
  std::fill_n(name + text.copy(name, kNameSize - 1),
              kNameSize - std::min(text.size(), kNameSize - 1), '\0');
  return A_Err_NONE;
}

A_Err GetProjectPath(AEGP_ProjectH, AEGP_MemHandle* path) {
  const AEGP_MemHandle made = TheHost().memory.makeHandle(TheHost().project().reportedPath);
  if (!made) return A_Err_GENERIC;
  TheHost().ledger.give(Holding::memoryHandle, made, TheHost().origin());
  *path = made;
  return A_Err_NONE;
}

A_Err ProjectIsDirty(AEGP_ProjectH, A_Boolean* dirty) {
  *dirty = TheHost().project().dirty ? 1 : 0;
  return A_Err_NONE;
}

A_Err NewProject(AEGP_ProjectH* project) {
  TheHost().timeline.add(Actor::plugIn, "closes the project for a new one");
  TheHost().newProject();
  *project = TheHost().project().handle;
  return A_Err_NONE;
}

A_Err OpenProjectFromPath(const A_UTF16Char* path, AEGP_ProjectH* project) {
  if (TheHost().refusesMoreHooks()) return A_Err_GENERIC;
  const std::optional<std::string> opened = ToUTF8(path);
  if (!opened) {
    TheHost().timeline.add(Actor::plugIn, "asks for a project whose path isn't UTF-16");
    return A_Err_GENERIC;
  }
  TheHost().timeline.add(Actor::plugIn, fmt::format("asks for the project {}", *opened));
  if (const A_Err result = TheHost().openProject(*opened)) return result;
  *project = TheHost().project().handle;
  return A_Err_NONE;
}

}  // namespace

const AEGP_ProjSuite6 kProjSuite6{
    SUPPLIED(proj6, AEGP_GetNumProjects, Body<GetNumProjects>, "num_projPL"),
    SUPPLIED(proj6, AEGP_GetProjectByIndex, Body<GetProjectByIndex>, "proj_indexL", "projPH"),
    SUPPLIED(proj6, AEGP_GetProjectName, Body<GetProjectName>, "projH", "nameZ"),
    SUPPLIED(proj6, AEGP_GetProjectPath, Body<GetProjectPath>, "projH", "unicode_pathPH"),
    NOT_SUPPLIED(proj6, AEGP_GetProjectRootFolder),
    NOT_SUPPLIED(proj6, AEGP_SaveProjectToPath),
    NOT_SUPPLIED(proj6, AEGP_GetProjectTimeDisplay),
    NOT_SUPPLIED(proj6, AEGP_SetProjectTimeDisplay),
    SUPPLIED(proj6, AEGP_ProjectIsDirty, Body<ProjectIsDirty>, "projH", "is_dirtyPB"),
    NOT_SUPPLIED(proj6, AEGP_SaveProjectAs),
    SUPPLIED(proj6, AEGP_NewProject, Body<NewProject>, "new_projectPH"),
    SUPPLIED(proj6, AEGP_OpenProjectFromPath, Body<OpenProjectFromPath>, "pathZ", "projectPH"),
    NOT_SUPPLIED(proj6, AEGP_GetProjectBitDepth),
    NOT_SUPPLIED(proj6, AEGP_SetProjectBitDepth),
};

}  // namespace host
