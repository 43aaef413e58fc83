#include "AE_APISuiteHandlerManager.h"

#include <array>

namespace {

constexpr AEGP_Command kPurgeImageCacheCommand = 2372;
constexpr char kDiskCacheSection[] = "Disk Cache Controls";
constexpr char kDiskCacheKey[] = "Enabled 2";
constexpr char kDiskCacheEnabled[] = "1";
constexpr char kDiskCacheDisabled[] = "0";

}  // namespace

AEGP_SuiteHandler* AE_APISuiteHandlerManager::suite_handler_ptr() {
  return &mSuiteHandler;
}

A_Err AE_APISuiteHandlerManager::closeCurrentProject() {
  AEGP_ProjectH project = nullptr;
  return mSuiteHandler.ProjSuite6()->AEGP_NewProject(&project);
}

A_Err AE_APISuiteHandlerManager::freeMemHandle(_Up_OpaqueMem** memH) {
  return mSuiteHandler.MemorySuite1()->AEGP_FreeMemHandle(memH);
}

unsigned short* AE_APISuiteHandlerManager::getLockedUTF16StringStart(_Up_OpaqueMem** memH) {
  void* start = nullptr;
  mSuiteHandler.MemorySuite1()->AEGP_LockMemHandle(memH, &start);
  return static_cast<unsigned short*>(start);
}

_AEGP_Project** AE_APISuiteHandlerManager::getProjectByIndex(int index) {
  AEGP_ProjectH project = nullptr;
  mSuiteHandler.ProjSuite6()->AEGP_GetProjectByIndex(index, &project);
  return project;
}

_Up_OpaqueMem** AE_APISuiteHandlerManager::getProjectPathMemHandle(_AEGP_Project** project) {
  AEGP_MemHandle memH = nullptr;
  mSuiteHandler.ProjSuite6()->AEGP_GetProjectPath(project, &memH);
  return memH;
}

bool AE_APISuiteHandlerManager::isProjectDirty(_AEGP_Project** project) {
  A_Boolean dirty = 0;
  mSuiteHandler.ProjSuite6()->AEGP_ProjectIsDirty(project, &dirty);
  return dirty != 0;
}

A_Err AE_APISuiteHandlerManager::openProjectFromUTF16Path(unsigned short* path) {
  AEGP_ProjectH project = nullptr;
  return mSuiteHandler.ProjSuite6()->AEGP_OpenProjectFromPath(path, &project);
}

A_Err AE_APISuiteHandlerManager::purgeImageCache() {
  return mSuiteHandler.CommandSuite1()->AEGP_DoCommand(kPurgeImageCacheCommand);
}

A_Err AE_APISuiteHandlerManager::refreshAllWindows() {
  return mSuiteHandler.AdvAppSuite2()->PF_RefreshAllWindows();
}

A_Err AE_APISuiteHandlerManager::unlockMemHandle(_Up_OpaqueMem** memH) {
  return mSuiteHandler.MemorySuite1()->AEGP_UnlockMemHandle(memH);
}

A_Err AE_APISuiteHandlerManager::updateFontList() {
  mSuiteHandler.UtilitySuite6()->AEGP_UpdateFontList();
  return mSuiteHandler.AdvAppSuite2()->PF_RefreshAllWindows();
}

std::string AE_APISuiteHandlerManager::getDiskCacheEnabledSetting() {
  std::array<char, 256> value{};
  AEGP_PersistentBlobH blob = nullptr;
  A_u_long length = 0;
  mSuiteHandler.PersistentDataSuite3()->AEGP_GetApplicationBlob(&blob);
  mSuiteHandler.PersistentDataSuite4()->AEGP_GetString(blob, kDiskCacheSection, kDiskCacheKey,
                                                       kDiskCacheEnabled, value.size(),
                                                       value.data(), &length);
  // The host may have left no terminator.
  value.back() = '\0';
  return value.data();
}

A_Err AE_APISuiteHandlerManager::disableDiskCache() {
  return setDiskCachePreference(kDiskCacheDisabled);
}

A_Err AE_APISuiteHandlerManager::enableDiskCache() {
  return setDiskCachePreference(kDiskCacheEnabled);
}

A_Err AE_APISuiteHandlerManager::setDiskCachePreference(std::string value) {
  AEGP_PersistentBlobH blob = nullptr;
  const A_Err error = mSuiteHandler.PersistentDataSuite3()->AEGP_GetApplicationBlob(&blob);
  if (error != A_Err_NONE) return error;
  return mSuiteHandler.PersistentDataSuite3()->AEGP_SetString(blob, kDiskCacheSection,
                                                              kDiskCacheKey, value.c_str());
}
