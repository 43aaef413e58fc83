#include <fmt/format.h>

#include "SuiteFunction.h"

namespace host {
namespace {

// Only one menu's number is known here.
std::string NameOfMenu(AEGP_MenuID menu) {
  return menu == AEGP_Menu_WINDOW ? "the Window menu" : fmt::format("menu {}", int{menu});
}

std::string NameOfPlace(A_long place) {
  switch (place) {
    case AEGP_MENU_INSERT_SORTED:
      return "sorted";
    case AEGP_MENU_INSERT_AT_BOTTOM:
      return "at the bottom";
    case AEGP_MENU_INSERT_AT_TOP:
      return "at the top";
    default:
      return fmt::format("place {}", place);
  }
}

A_Err GetUniqueCommand(AEGP_Command* command) {
  *command = TheHost().menus.makeCommand();
  return A_Err_NONE;
}

A_Err InsertMenuCommand(AEGP_Command command, const A_char* name, AEGP_MenuID menu, A_long place) {
  SuiteCall& call = SuiteCall::current();
  if (!TheHost().menus.wasMade(command)) {
    return call.misused(Finding::unknownCommand, "the command isn't from AEGP_GetUniqueCommand");
  }
  // Which menus there are isn't known here, only that they are numbered from 1.
  if (menu < 1) {
    return call.misused(Finding::unknownMenu, fmt::format("there is no menu {}", int{menu}));
  }
  if (TheHost().menus.has(command)) {
    call.misused(Finding::registeredTwice, "a menu item has the command already");
  }
  const bool inserted = TheHost().menus.insert(command, name, menu, place);
  TheHost().timeline.add(Actor::plugIn,
                         fmt::format("inserts \"{}\" into {}, {}{}", name, NameOfMenu(menu),
                                     NameOfPlace(place), inserted ? "" : ": refused"));
  return inserted ? A_Err{A_Err_NONE} : A_Err{A_Err_GENERIC};
}

void NoteRefused(AEGP_Command command, const A_char*, AEGP_MenuID, A_long) {
  TheHost().menus.noteRefused(command);
}

A_Err RemoveMenuCommand(AEGP_Command command) {
  TheHost().timeline.add(
      Actor::plugIn, fmt::format("removes the menu item \"{}\"", TheHost().menus.textOf(command)));
  TheHost().menus.remove(command);
  return A_Err_NONE;
}

A_Err SetMenuCommandName(AEGP_Command command, const A_char* name) {
  TheHost().timeline.add(Actor::plugIn, fmt::format("renames the menu item \"{}\" to \"{}\"",
                                                    TheHost().menus.textOf(command), name));
  TheHost().menus.rename(command, name);
  return A_Err_NONE;
}

A_Err EnableCommand(AEGP_Command command) {
  if (!TheHost().isUpdatingMenus()) {
    SuiteCall::current().misused(Finding::enabledOutsideHook,
                                 "it lasts only until the menu closes");
  }
  TheHost().menus.setEnabled(command, true);
  return A_Err_NONE;
}

A_Err DisableCommand(AEGP_Command command) {
  TheHost().menus.setEnabled(command, false);
  return A_Err_NONE;
}

A_Err CheckMarkMenuCommand(AEGP_Command command, A_Boolean checked) {
  TheHost().menus.setChecked(command, checked != 0);
  return A_Err_NONE;
}

// The host has commands of its own that aren't known here.
A_Err DoCommand(AEGP_Command command) {
  if (command <= 0) {
    return SuiteCall::current().misused(Finding::unknownCommand,
                                        fmt::format("there is no command {}", command));
  }
  if (TheHost().refusesMoreHooks()) return A_Err_GENERIC;
  TheHost().timeline.add(Actor::plugIn, fmt::format("asks for command {}", command));
  TheHost().runCommand(command);
  return A_Err_NONE;
}

using Insert = Body<InsertMenuCommand, Order::faultFirst, NoteRefused>;

}  // namespace

const AEGP_CommandSuite1 kCommandSuite1{
    SUPPLIED(command1, AEGP_GetUniqueCommand, Body<GetUniqueCommand>, "unique_commandP"),
    SUPPLIED(command1, AEGP_InsertMenuCommand, Insert, "command", "nameZ", "menu", "after_item"),
    SUPPLIED(command1, AEGP_RemoveMenuCommand, Body<RemoveMenuCommand>, "menu_item"),
    SUPPLIED(command1, AEGP_SetMenuCommandName, Body<SetMenuCommandName>, "menu_item", "nameZ"),
    SUPPLIED(command1, AEGP_EnableCommand, Body<EnableCommand>, "menu_item"),
    SUPPLIED(command1, AEGP_DisableCommand, Body<DisableCommand>, "menu_item"),
    SUPPLIED(command1, AEGP_CheckMarkMenuCommand, Body<CheckMarkMenuCommand>, "menu_item", "check"),
    SUPPLIED(command1, AEGP_DoCommand, Body<DoCommand>, "command"),
};

}  // namespace host
