#include <fmt/format.h>

#include "Host.h"
#include "SuiteTables.h"

namespace host {
namespace {

A_Err GetUniqueCommand(AEGP_Command* command) {
  if (const A_Err fault = Fault("AEGP_GetUniqueCommand")) return fault;
  *command = TheHost().menus.makeCommand();
  return A_Err_NONE;
}

A_Err InsertMenuCommand(AEGP_Command command, const A_char* name, AEGP_MenuID menu, A_long place) {
  if (const A_Err fault = Fault("AEGP_InsertMenuCommand")) return fault;
  const A_Err result = TheHost().menus.insert(command, name, menu, place);
  TheHost().timeline.add(Actor::plugIn, fmt::format("inserts \"{}\" into menu {}, place {}{}", name,
                                                    int{menu}, place, result ? ": refused" : ""));
  return result;
}

A_Err EnableCommand(AEGP_Command command) {
  if (const A_Err fault = Fault("AEGP_EnableCommand")) return fault;
  return TheHost().menus.enable(command);
}

A_Err DoCommand(AEGP_Command command) {
  if (const A_Err fault = Fault("AEGP_DoCommand")) return fault;
  TheHost().timeline.add(Actor::plugIn, fmt::format("asks for command {}", command));
  TheHost().runCommand(command);
  return A_Err_NONE;
}

}  // namespace

const AEGP_CommandSuite1 kCommandSuite1{
    .AEGP_GetUniqueCommand = GetUniqueCommand,
    .AEGP_InsertMenuCommand = InsertMenuCommand,
    NOT_SUPPLIED(AEGP_RemoveMenuCommand),
    NOT_SUPPLIED(AEGP_SetMenuCommandName),
    .AEGP_EnableCommand = EnableCommand,
    NOT_SUPPLIED(AEGP_DisableCommand),
    NOT_SUPPLIED(AEGP_CheckMarkMenuCommand),
    .AEGP_DoCommand = DoCommand,
};

}  // namespace host
