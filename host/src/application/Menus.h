#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "AE_GeneralPlug.h"

namespace host {

/// A menu item of a plug-in.
struct MenuItem {
  std::string text;
  bool enabled = false;
  bool checked = false;
};

/// The menu items of plug-ins.
struct Menus {
  /// The host's own commands have smaller ids.
  static constexpr AEGP_Command kLastHostCommand = 10'000;

  /// Returns the texts of the items that are enabled, or checked, in the order of their commands.
  std::vector<std::string> textsOf(bool MenuItem::*flag) const;

  AEGP_Command lastCommand = kLastHostCommand;  ///< that was given out
  std::map<AEGP_Command, MenuItem> items;
  std::set<AEGP_Command> refused;  ///< those whose items the host refused to insert
};

}  // namespace host
