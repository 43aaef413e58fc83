#include <fmt/format.h>

#include "SuiteFunction.h"

namespace host {
namespace {

// Only one menu's number is known here.
std::string NameOfMenu(AEGP_MenuID menu) {
  return menu == AEGP_Menu_WINDOW ? "the Window menu" : fmt::format("menu {}", int{menu});
}

std::string NameOfPlace(A_long place) {
  if (place == AEGP_MENU_INSERT_SORTED) return "sorted";
  if (place == AEGP_MENU_INSERT_AT_BOTTOM) return "at the bottom";
  if (place == AEGP_MENU_INSERT_AT_TOP) return "at the top";
  return fmt::format("place {}", place);
}

void GetUniqueCommand(Host& host, AEGP_Command* command) {
  *command = ++host.menus.lastCommand;
}

A_Err InsertMenuCommand(Host& host, A_Err fault, AEGP_Command command, const A_char* name,
                        AEGP_MenuID menu, A_long place) {
  // It counts as refused until there is an item, whatever goes wrong below.
  host.menus.refused.insert(command);
  if (fault != A_Err_NONE) return fault;
  if (command <= Menus::kLastHostCommand || command > host.menus.lastCommand) {
    return host.misused(Finding::unknownCommand, "the command isn't from AEGP_GetUniqueCommand");
  }
  // Which menus there are isn't known here, only that they are numbered from 1.
  if (menu < 1) {
    return host.misused(Finding::unknownMenu, fmt::format("there is no menu {}", int{menu}));
  }
  if (host.menus.items.contains(command)) {
    host.misused(Finding::registeredTwice, "a menu item has the command already");
  }
  const bool isRefused = menu == AEGP_Menu_WINDOW && place != AEGP_MENU_INSERT_SORTED;
  host.timeline.add(Actor::plugIn,
                    fmt::format("inserts \"{}\" into {}, {}{}", name, NameOfMenu(menu),
                                NameOfPlace(place), isRefused ? ": refused" : ""));
  if (isRefused) return A_Err_GENERIC;
  host.menus.refused.erase(command);
  host.menus.items[command] = {name};
  return A_Err_NONE;
}

void RemoveMenuCommand(Host& host, AEGP_Command command) {
  const MenuItem removed = host.menus.items.extract(command).mapped();
  host.timeline.add(Actor::plugIn, fmt::format("removes the menu item \"{}\"", removed.text));
}

void SetMenuCommandName(Host& host, AEGP_Command command, const A_char* name) {
  std::string& text = host.menus.items.at(command).text;
  host.timeline.add(Actor::plugIn,
                    fmt::format("renames the menu item \"{}\" to \"{}\"", text, name));
  text = name;
}

void EnableCommand(Host& host, AEGP_Command command) {
  if (!host.isIn(kUpdateMenuHook)) {
    host.misused(Finding::enabledOutsideHook, "it lasts only until the menu closes");
  }
  host.menus.items.at(command).enabled = true;
}

void DisableCommand(Host& host, AEGP_Command command) {
  host.menus.items.at(command).enabled = false;
}

void CheckMarkMenuCommand(Host& host, AEGP_Command command, A_Boolean checked) {
  host.menus.items.at(command).checked = checked != 0;
}

// The host has commands of its own that aren't known here.
A_Err DoCommand(Host& host, AEGP_Command command) {
  if (command <= 0) {
    return host.misused(Finding::unknownCommand, fmt::format("there is no command {}", command));
  }
  if (host.refusesMoreHooks()) return A_Err_GENERIC;
  host.timeline.add(Actor::plugIn, fmt::format("asks for command {}", command));
  host.runCommand(command);
  return A_Err_NONE;
}

}  // namespace

A_Err CheckMenuItem(Host& host, AEGP_Command command) {
  if (host.menus.items.contains(command)) return A_Err_NONE;
  // The plug-in may not have noticed.
  if (host.menus.refused.contains(command)) return A_Err_GENERIC;
  return host.misused(Finding::unknownCommand,
                      fmt::format("no menu item has the command {}", command));
}

const AEGP_CommandSuite1 kCommandSuite1{
    SUPPLIED(kCommandSuite1, AEGP_GetUniqueCommand, GetUniqueCommand, "unique_commandP"),
    SUPPLIED(kCommandSuite1, AEGP_InsertMenuCommand, InsertMenuCommand, "command", "nameZ", "menu",
             "after_item"),
    SUPPLIED(kCommandSuite1, AEGP_RemoveMenuCommand, RemoveMenuCommand, "menu_item"),
    SUPPLIED(kCommandSuite1, AEGP_SetMenuCommandName, SetMenuCommandName, "menu_item", "nameZ"),
    SUPPLIED(kCommandSuite1, AEGP_EnableCommand, EnableCommand, "menu_item"),
    SUPPLIED(kCommandSuite1, AEGP_DisableCommand, DisableCommand, "menu_item"),
    SUPPLIED(kCommandSuite1, AEGP_CheckMarkMenuCommand, CheckMarkMenuCommand, "menu_item", "check"),
    SUPPLIED(kCommandSuite1, AEGP_DoCommand, DoCommand, "command"),
};

}  // namespace host
