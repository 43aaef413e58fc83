#include "Operations.h"

#include <fmt/format.h>

#include <algorithm>

namespace host {

const std::vector<Operation> kOperations{
    {"ActivateChosenFonts", {"path", "list", "count"}},
    {"CreateMenusFromJSONBuffer", {}},
    {"GetAPIVersion", {}},
    {"GetIDForDocument", {"path", "size", "id"}},
    {"GetMenus", {}},
    {"GetSettings", {}},
    {"GetSocketPort", {}},
    {"HandleCloseDocument", {"path", "id"}},
    {"HandleCreateNewDocument", {"size", "id"}},
    {"HandleMenuSelection", {}},
    {"HandleOpenExistingDocument", {"path", "size", "list", "count"}},
    {"HandleSaveDocument", {"path", "id"}},
    {"IdleEvent", {}},
    {"InitializeTamberlinkInterface", {"bundleId", "version"}},
    {"InvokeCommandDialog", {"id", "reply", "start"}},
    {"InvokeResolveDialog", {"list", "size"}},
    {"InvokeRestrictedFontsDialog", {"path", "list"}},
    {"PluginIsEnabled", {"showMessage", "enabled"}},
    {"ProcessPanelMessages", {}},
    {"RegisterPlugPlug", {}},
    {"SetPathForDocument", {"path", "id"}},
    {"TerminateTamberlinkInterface", {}},
    {"UpdateDocumentFontUsage", {}},
    {"SetRebuildWorkgroupsMenuCallback", {}},
    {"ShowNotLoggedInMessageBox", {}},
    {"ShouldShowLogin", {"show"}},
};

const Operation& FindOperation(const YamlValue& value, const std::string& name) {
  const auto found = std::find_if(kOperations.begin(), kOperations.end(),
                                  [&](const Operation& each) { return each.name == name; });
  if (found == kOperations.end()) {
    value.fail(fmt::format("the framework has no operation '{}'", name));
  }
  return *found;
}

}  // namespace host
