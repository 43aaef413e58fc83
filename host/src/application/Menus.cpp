#include "Menus.h"

#include <algorithm>
#include <iterator>

namespace host {
namespace {

template <typename Items>
std::vector<std::string> Texts(const Items& items, bool Items::value_type::*flag) {
  std::vector<std::string> texts;
  for (const auto& item : items) {
    if (item.*flag) texts.push_back(item.text);
  }
  return texts;
}

}  // namespace

bool Menus::insert(AEGP_Command command, std::string_view text, AEGP_MenuID menu, A_long place) {
  if (menu == AEGP_Menu_WINDOW && place != AEGP_MENU_INSERT_SORTED) return false;
  mItems.push_back({command, std::string(text)});
  return true;
}

bool Menus::has(AEGP_Command command) const {
  return std::any_of(mItems.begin(), mItems.end(),
                     [&](const Item& item) { return item.command == command; });
}

std::string Menus::textOf(AEGP_Command command) const {
  const auto item = std::find_if(mItems.begin(), mItems.end(),
                                 [&](const Item& each) { return each.command == command; });
  return item->text;
}

void Menus::remove(AEGP_Command command) {
  std::erase_if(mItems, [&](const Item& item) { return item.command == command; });
}

void Menus::rename(AEGP_Command command, std::string_view text) {
  for (Item& item : mItems) {
    if (item.command == command) item.text = text;
  }
}

void Menus::setEnabled(AEGP_Command command, bool enabled) {
  for (Item& item : mItems) {
    if (item.command == command) item.enabled = enabled;
  }
}

void Menus::setChecked(AEGP_Command command, bool checked) {
  for (Item& item : mItems) {
    if (item.command == command) item.checked = checked;
  }
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
  return Texts(mItems, &Item::enabled);
}

std::vector<std::string> Menus::checkedItems() const {
  return Texts(mItems, &Item::checked);
}

std::vector<AEGP_Command> Menus::commands() const {
  std::vector<AEGP_Command> commands;
  std::transform(mItems.begin(), mItems.end(), std::back_inserter(commands),
                 [](const Item& item) { return item.command; });
  return commands;
}

}  // namespace host
