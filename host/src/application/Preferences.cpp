#include "Preferences.h"

namespace host {

const std::string* Preferences::find(const std::string& section, const std::string& key) const {
  const auto keys = mSections.find(section);
  if (keys == mSections.end()) return nullptr;
  const auto entry = keys->second.find(key);
  return entry == keys->second.end() ? nullptr : &entry->second;
}

size_t Preferences::countKeys(const std::string& section) const {
  const auto keys = mSections.find(section);
  return keys == mSections.end() ? 0 : keys->second.size();
}

void Preferences::remove(const std::string& section, const std::string& key) {
  const auto keys = mSections.find(section);
  if (keys == mSections.end()) return;
  keys->second.erase(key);
  if (keys->second.empty()) mSections.erase(keys);
}

}  // namespace host
