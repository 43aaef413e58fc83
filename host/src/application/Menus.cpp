#include "Menus.h"

#include <algorithm>

namespace host {

A_Err Menus::insert(AEGP_Command command, std::string_view text, AEGP_MenuID menu, A_long place) {
  if (command <= 0 || command > mLastCommand || text.empty()) return A_Err_GENERIC;
  if (menu == AEGP_Menu_WINDOW && place != AEGP_MENU_INSERT_SORTED) return A_Err_GENERIC;
  mItems.push_back({command, std::string(text)});
  return A_Err_NONE;
}

A_Err Menus::enable(AEGP_Command command) {
  A_Err result = A_Err_GENERIC;
  for (Item& item : mItems) {
    if (item.command != command) continue;
    item.enabled = true;
    result = A_Err_NONE;
  }
  return result;
}

void Menus::disableAll() {
  for (Item& item : mItems) item.enabled = false;
}

AEGP_Command Menus::commandOf(std::string_view text) const {
  const auto item = std::find_if(mItems.begin(), mItems.end(),
                                 [&](const Item& each) { return each.text == text; });
  return item == mItems.end() ? 0 : item->command;
}

bool Menus::isEnabled(AEGP_Command command) const {
  return std::any_of(mItems.begin(), mItems.end(),
                     [&](const Item& item) { return item.command == command && item.enabled; });
}

std::vector<std::string> Menus::enabledItems() const {
  std::vector<std::string> texts;
  for (const Item& item : mItems) {
    if (item.enabled) texts.push_back(item.text);
  }
  return texts;
}

}  // namespace host
