#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "AE_GeneralPlug.h"

namespace host {

/// The menu items of plug-ins.
class Menus {
 public:
  AEGP_Command makeCommand() { return ++mLastCommand; }
  /// Returns whether `makeCommand` has given out the command.
  bool wasMade(AEGP_Command command) const {
    return command > kLastHostCommand && command <= mLastCommand;
  }

  /// Inserts an item. Returns false for a place in the Window menu other than
  /// `AEGP_MENU_INSERT_SORTED`.
  bool insert(AEGP_Command command, std::string_view text, AEGP_MenuID menu, A_long place);
  /// Returns whether an item has the command.
  bool has(AEGP_Command command) const;
  /// Notes that the host refused to insert an item with the command.
  void noteRefused(AEGP_Command command) { mRefused.insert(command); }
  bool wasRefused(AEGP_Command command) const { return mRefused.contains(command); }

  // There has to be an item with the command.

  std::string textOf(AEGP_Command command) const;
  void remove(AEGP_Command command);
  void rename(AEGP_Command command, std::string_view text);
  void setEnabled(AEGP_Command command, bool enabled);
  void setChecked(AEGP_Command command, bool checked);

  /// Called before a menu is drawn.
  void disableAll();

  /// Returns 0 if no item has the text.
  AEGP_Command commandOf(std::string_view text) const;
  bool isEnabled(AEGP_Command command) const;
  std::vector<std::string> enabledItems() const;
  std::vector<std::string> checkedItems() const;
  std::vector<AEGP_Command> commands() const;

 private:
  struct Item {
    AEGP_Command command = 0;
    std::string text;
    bool enabled = false;
    bool checked = false;
  };

  // The host's own commands have smaller ids.
  static constexpr AEGP_Command kLastHostCommand = 10'000;
  AEGP_Command mLastCommand = kLastHostCommand;
  std::vector<Item> mItems;
  std::set<AEGP_Command> mRefused;
};

}  // namespace host
