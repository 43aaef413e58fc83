#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "AE_GeneralPlug.h"

namespace host {

/// The menu items of plug-ins.
class Menus {
 public:
  AEGP_Command makeCommand() { return ++mLastCommand; }
  /// Inserts an item. Fails for a command that nobody has asked for, and for a place in the Window
  /// menu other than `AEGP_MENU_INSERT_SORTED`.
  A_Err insert(AEGP_Command command, std::string_view text, AEGP_MenuID menu, A_long place);
  A_Err enable(AEGP_Command command);
  /// Called before a menu is drawn.
  void disableAll();

  /// Returns 0 if no item has the text.
  AEGP_Command commandOf(std::string_view text) const;
  bool isEnabled(AEGP_Command command) const;
  std::vector<std::string> enabledItems() const;

 private:
  struct Item {
    AEGP_Command command = 0;
    std::string text;
    bool enabled = false;
  };

  // The host's own commands have smaller ids.
  AEGP_Command mLastCommand = 10'000;
  std::vector<Item> mItems;
};

}  // namespace host
