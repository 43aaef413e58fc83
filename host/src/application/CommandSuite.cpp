#include <fmt/format.h>

#include "Host.h"
#include "HostCall.h"
#include "SuiteTables.h"

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
  HostCall call(SuiteId::command1, "AEGP_GetUniqueCommand", command);
  call.needs(command, "unique_commandP");
  if (const A_Err error = call.error()) return error;
  *command = TheHost().menus.makeCommand();
  return A_Err_NONE;
}

A_Err InsertMenuCommand(AEGP_Command command, const A_char* name, AEGP_MenuID menu, A_long place) {
  HostCall call(SuiteId::command1, "AEGP_InsertMenuCommand", int64_t{command}, name, int64_t{menu},
                int64_t{place});
  if (call.misuse() == A_Err_NONE && !TheHost().menus.wasMade(command)) {
    call.misused(Finding::unknownCommand, "the command isn't from AEGP_GetUniqueCommand");
  }
  call.needs(name, "nameZ");
  // Which menus there are isn't known here, only that they are numbered from 1.
  if (menu < 1) call.misused(Finding::unknownMenu, fmt::format("there is no menu {}", int{menu}));
  if (const A_Err error = call.error()) {
    TheHost().menus.noteRefused(command);
    return error;
  }
  const bool inserted = TheHost().menus.insert(command, name, menu, place);
  TheHost().timeline.add(Actor::plugIn,
                         fmt::format("inserts \"{}\" into {}, {}{}", name, NameOfMenu(menu),
                                     NameOfPlace(place), inserted ? "" : ": refused"));
  if (inserted) return A_Err_NONE;
  TheHost().menus.noteRefused(command);
  TheHost().noteAnswer(A_Err_GENERIC);
  return A_Err_GENERIC;
}

A_Err RemoveMenuCommand(AEGP_Command command) {
  HostCall call(SuiteId::command1, "AEGP_RemoveMenuCommand", int64_t{command});
  call.needsMenuItem(command);
  if (const A_Err error = call.error()) return error;
  TheHost().timeline.add(
      Actor::plugIn, fmt::format("removes the menu item \"{}\"", TheHost().menus.textOf(command)));
  TheHost().menus.remove(command);
  return A_Err_NONE;
}

A_Err SetMenuCommandName(AEGP_Command command, const A_char* name) {
  HostCall call(SuiteId::command1, "AEGP_SetMenuCommandName", int64_t{command}, name);
  call.needsMenuItem(command);
  call.needs(name, "nameZ");
  if (const A_Err error = call.error()) return error;
  TheHost().timeline.add(Actor::plugIn, fmt::format("renames the menu item \"{}\" to \"{}\"",
                                                    TheHost().menus.textOf(command), name));
  TheHost().menus.rename(command, name);
  return A_Err_NONE;
}

A_Err EnableCommand(AEGP_Command command) {
  HostCall call(SuiteId::command1, "AEGP_EnableCommand", int64_t{command});
  if (call.needsMenuItem(command) && call.misuse() == A_Err_NONE && !TheHost().isUpdatingMenus()) {
    call.misused(Finding::enabledOutsideHook, "it lasts only until the menu closes");
  }
  if (const A_Err error = call.error()) return error;
  TheHost().menus.setEnabled(command, true);
  return A_Err_NONE;
}

A_Err DisableCommand(AEGP_Command command) {
  HostCall call(SuiteId::command1, "AEGP_DisableCommand", int64_t{command});
  call.needsMenuItem(command);
  if (const A_Err error = call.error()) return error;
  TheHost().menus.setEnabled(command, false);
  return A_Err_NONE;
}

A_Err CheckMarkMenuCommand(AEGP_Command command, A_Boolean checked) {
  HostCall call(SuiteId::command1, "AEGP_CheckMarkMenuCommand", int64_t{command}, int64_t{checked});
  call.needsMenuItem(command);
  if (const A_Err error = call.error()) return error;
  TheHost().menus.setChecked(command, checked != 0);
  return A_Err_NONE;
}

// The host has commands of its own that aren't known here.
A_Err DoCommand(AEGP_Command command) {
  HostCall call(SuiteId::command1, "AEGP_DoCommand", int64_t{command});
  if (command <= 0) {
    call.misused(Finding::unknownCommand, fmt::format("there is no command {}", command));
  }
  call.needsDepthForHooks();
  if (const A_Err error = call.error()) return error;
  TheHost().timeline.add(Actor::plugIn, fmt::format("asks for command {}", command));
  TheHost().runCommand(command);
  return A_Err_NONE;
}

}  // namespace

const AEGP_CommandSuite1 kCommandSuite1{
    .AEGP_GetUniqueCommand = GetUniqueCommand,
    .AEGP_InsertMenuCommand = InsertMenuCommand,
    .AEGP_RemoveMenuCommand = RemoveMenuCommand,
    .AEGP_SetMenuCommandName = SetMenuCommandName,
    .AEGP_EnableCommand = EnableCommand,
    .AEGP_DisableCommand = DisableCommand,
    .AEGP_CheckMarkMenuCommand = CheckMarkMenuCommand,
    .AEGP_DoCommand = DoCommand,
};

}  // namespace host
