#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "AE_GeneralPlug.h"

namespace host {

/// The items that plug-ins have put into the host's menus.
class Menus {
 public:
  AEGP_Command makeCommand() { return ++mLastCommand; }
  /// Refused for a command of nobody and, in the Window menu, for any place but the sorted one.
  A_Err insert(AEGP_Command command, std::string_view text, AEGP_MenuID menu, A_long place);
  A_Err enable(AEGP_Command command);
  /// What the host does before a menu is drawn.
  void disableAll();

  /// 0 when no item has that text.
  AEGP_Command commandOf(std::string_view text) const;
  bool isEnabled(AEGP_Command command) const;
  std::vector<std::string> enabledItems() const;

 private:
  struct Item {
    AEGP_Command command = 0;
    std::string text;
    bool enabled = false;
  };

  // Commands of the host itself have smaller ids.
  AEGP_Command mLastCommand = 10'000;
  std::vector<Item> mItems;
};

}  // namespace host
