#pragma once

#include <map>
#include <string>

#include "AE_GeneralPlug.h"

namespace host {

/// The host's preferences: texts by section and key.
class Preferences {
 public:
  using Keys = std::map<std::string, std::string>;
  using Sections = std::map<std::string, Keys>;

  void reset(const Sections& sections) { mSections = sections; }
  const Sections& sections() const { return mSections; }
  void set(const std::string& section, const std::string& key, const std::string& text) {
    mSections[section][key] = text;
  }
  /// Returns null if there is none.
  const std::string* find(const std::string& section, const std::string& key) const;
  /// Returns how many keys the section has; 0 also if there is no such section.
  size_t countKeys(const std::string& section) const;
  /// Removes the entry, and the section with its last entry.
  void remove(const std::string& section, const std::string& key);
  /// The handle by which plug-ins name the preferences.
  AEGP_PersistentBlobH handle() { return &mOpaque; }

 private:
  Sections mSections;
  _AEGP_PersistentBlob* mOpaque = nullptr;
};

}  // namespace host
