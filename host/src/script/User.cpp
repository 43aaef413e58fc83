#include "User.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>

namespace host {
namespace {

// The host's own commands.
enum HostCommand : AEGP_Command { kOpen = 1, kClose, kSave, kSaveAs, kQuit };

// Returns false if a plug-in has handled the command.
bool HostMayHandle(Host& host, HostCommand command) {
  host.drawMenus();
  if (!host.runCommand(command)) return true;
  static constexpr std::array kNames{"", "Open", "Close", "Save", "Save As", "Quit"};
  const char* const name = kNames.at(static_cast<size_t>(command));
  host.timeline.add(Actor::plugIn, fmt::format("handles the host's command \"{}\"", name));
  host.report(Finding::hostCommandHandled,
              fmt::format("the host's command \"{}\" had no effect", name));
  return false;
}

}  // namespace

void OpenByDialog(Host& host, const std::string& path) {
  host.timeline.add(Actor::user, fmt::format("opens {} by the host's dialog", path));
  if (!HostMayHandle(host, kOpen)) return;
  host.showDialog(host.settings().openProjectTitle);
  host.openProject(host.inFolder(path));
}

void OpenByDoubleClick(Host& host, const std::string& path) {
  host.timeline.add(Actor::user, fmt::format("double-clicks {}", path));
  host.openProject(host.inFolder(path));
}

void Save(Host& host) {
  host.timeline.add(Actor::user, "saves the project");
  if (host.project().path.empty())
    throw StepImpossible("a project without a path can't be saved in place");
  if (HostMayHandle(host, kSave)) host.saveProject(host.project().path);
}

void SaveAs(Host& host, const std::string& path) {
  host.timeline.add(Actor::user, fmt::format("saves the project as {}", path));
  if (HostMayHandle(host, kSaveAs)) host.saveProject(host.inFolder(path));
}

void Close(Host& host) {
  host.timeline.add(Actor::user, "closes the project");
  if (HostMayHandle(host, kClose)) host.newProject();
}

void OpenMenu(Host& host) {
  host.timeline.add(Actor::user, "opens a menu");
  host.drawMenus();
}

void Pick(Host& host, const std::string& text) {
  host.timeline.add(Actor::user, fmt::format("picks \"{}\"", text));
  host.drawMenus();
  const auto& items = host.menus.items;
  const auto picked =
      std::ranges::find_if(items, [&](const auto& item) { return item.second.text == text; });
  if (picked == items.end()) {
    throw StepImpossible(fmt::format("no menu has an item \"{}\"", text));
  }
  if (!picked->second.enabled) {
    throw StepImpossible(fmt::format("the menu item \"{}\" is disabled", text));
  }
  host.commandWasHandled = host.runCommand(picked->first);
  if (!host.commandWasHandled) host.timeline.add(Actor::host, "finds the command unhandled");
}

void PickAll(Host& host) {
  host.timeline.add(Actor::user, "picks each menu item that is enabled");
  // A copy, because the plug-in may insert and remove items.
  const std::map<AEGP_Command, MenuItem> items = host.menus.items;
  for (const auto& [command, unused] : items) {
    host.drawMenus();
    const auto item = host.menus.items.find(command);
    if (item == host.menus.items.end() || !item->second.enabled) continue;
    host.commandWasHandled = host.runCommand(command);
  }
}

void Remove(Host& host, const std::string& path) {
  host.timeline.add(Actor::user, fmt::format("removes {} from the disk", path));
  std::filesystem::remove(host.inFolder(path));
}

void Quit(Host& host) {
  host.timeline.add(Actor::user, "quits the host");
  if (HostMayHandle(host, kQuit)) host.quit();
}

}  // namespace host
