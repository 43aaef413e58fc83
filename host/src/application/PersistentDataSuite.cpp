#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <set>
#include <string>
#include <string_view>

#include "SuiteFunction.h"

// Versions 3 and 4 differ only in `AEGP_GetApplicationBlob`. Preferences are texts, whatever the
// type by which they are set.

namespace host {
namespace {

AEGP_PersistentBlobH HandleOf(Preferences& preferences) {
  return reinterpret_cast<AEGP_PersistentBlobH>(&preferences);
}

void GetApplicationBlob3(Host& host, AEGP_PersistentBlobH* blob) {
  *blob = HandleOf(host.preferences);
}

void GetApplicationBlob4(Host& host, AEGP_PersistentType, AEGP_PersistentBlobH* blob) {
  GetApplicationBlob3(host, blob);
}

void GetNumSections(Host& host, AEGP_PersistentBlobH, A_long* count) {
  std::set<std::string_view> sections;
  for (const auto& [place, text] : host.preferences) sections.insert(place.first);
  *count = static_cast<A_long>(sections.size());
}

void DoesKeyExist(Host& host, AEGP_PersistentBlobH, const A_char* section, const A_char* key,
                  A_Boolean* exists) {
  *exists = host.preferences.contains({section, key}) ? 1 : 0;
}

void GetNumKeys(Host& host, AEGP_PersistentBlobH, const A_char* section, A_long* count) {
  *count = static_cast<A_long>(
      std::count_if(host.preferences.begin(), host.preferences.end(),
                    [&](const auto& preference) { return preference.first.first == section; }));
}

A_Err GetString(Host& host, AEGP_PersistentBlobH, const A_char* section, const A_char* key,
                const A_char* fallback, A_u_long size, A_char* buffer, A_u_long* actualSize) {
  const auto found = host.preferences.find({section, key});
  const std::string text = found != host.preferences.end() ? found->second
                           : fallback                      ? fallback
                                                           : "";
  if (actualSize) *actualSize = static_cast<A_u_long>(text.size() + 1);
  if (text.size() >= size) return A_Err_GENERIC;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return A_Err_NONE;
}

// A text that isn't a number counts as none.
template <typename Number>
void GetNumber(Host& host, AEGP_PersistentBlobH, const A_char* section, const A_char* key,
               Number fallback, Number* value) {
  *value = fallback;
  const auto found = host.preferences.find({section, key});
  if (found == host.preferences.end()) return;
  const std::string& text = found->second;
  const char* const end = text.data() + text.size();
  Number read{};
  const auto [stop, failure] = std::from_chars(text.data(), end, read);
  if (failure == std::errc() && stop == end) *value = read;
}

void SetString(Host& host, AEGP_PersistentBlobH, const A_char* section, const A_char* key,
               const A_char* text) {
  host.preferences[{section, key}] = text;
  host.timeline.add(Actor::plugIn,
                    fmt::format("sets preference {} / {} to \"{}\"", section, key, text));
}

template <typename Number>
void SetNumber(Host& host, AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
               Number value) {
  SetString(host, blob, section, key, fmt::format("{}", value).c_str());
}

void DeleteEntry(Host& host, AEGP_PersistentBlobH, const A_char* section, const A_char* key) {
  host.preferences.erase({section, key});
  host.timeline.add(Actor::plugIn, fmt::format("removes preference {} / {}", section, key));
}

}  // namespace

A_Err CheckPointer(Host& host, AEGP_PersistentBlobH preferences) {
  if (preferences == HandleOf(host.preferences)) return A_Err_NONE;
  return host.misused(Finding::unknownHandle, "there are no such preferences");
}

// The first arguments of most functions.
#define KEY "blobH", "section_keyZ", "value_keyZ"

// The functions that both versions have one after the other.
#define READING(table)                                                                     \
  SUPPLIED(table, AEGP_GetNumSections, GetNumSections, "blobH", "num_sectionPL"),          \
      NOT_SUPPLIED(table, AEGP_GetSectionKeyByIndex),                                      \
      SUPPLIED(table, AEGP_DoesKeyExist, DoesKeyExist, KEY, "existsPB"),                   \
      SUPPLIED(table, AEGP_GetNumKeys, GetNumKeys, "blobH", "section_keyZ", "num_keysPL"), \
      NOT_SUPPLIED(table, AEGP_GetValueKeyByIndex, AEGP_GetDataHandle, AEGP_GetData),      \
      SUPPLIED(table, AEGP_GetString, GetString, KEY, "default?", "buf_size", "bufZ",      \
               "actual_buf_sizePL?"),                                                      \
      SUPPLIED(table, AEGP_GetLong, GetNumber<A_long>, KEY, "defaultL", "valuePL"),        \
      SUPPLIED(table, AEGP_GetFpLong, GetNumber<A_FpLong>, KEY, "defaultF", "valuePF")
#define WRITING(table)                                                 \
  NOT_SUPPLIED(table, AEGP_SetDataHandle, AEGP_SetData),               \
      SUPPLIED(table, AEGP_SetString, SetString, KEY, "strZ"),         \
      SUPPLIED(table, AEGP_SetLong, SetNumber<A_long>, KEY, "valueL"), \
      SUPPLIED(table, AEGP_SetFpLong, SetNumber<A_FpLong>, KEY, "valueF")
#define DELETING(table) \
  SUPPLIED(table, AEGP_DeleteEntry, DeleteEntry, KEY), NOT_SUPPLIED(table, AEGP_GetPrefsDirectory)

const AEGP_PersistentDataSuite3 kPersistentDataSuite3{
    SUPPLIED(kPersistentDataSuite3, AEGP_GetApplicationBlob, GetApplicationBlob3, "blobPH"),
    READING(kPersistentDataSuite3),
    WRITING(kPersistentDataSuite3),
    DELETING(kPersistentDataSuite3),
};

const AEGP_PersistentDataSuite4 kPersistentDataSuite4{
    SUPPLIED(kPersistentDataSuite4, AEGP_GetApplicationBlob, GetApplicationBlob4, "blob_type",
             "blobPH"),
    READING(kPersistentDataSuite4),
    NOT_SUPPLIED(kPersistentDataSuite4, AEGP_GetTime, AEGP_GetARGB),
    WRITING(kPersistentDataSuite4),
    NOT_SUPPLIED(kPersistentDataSuite4, AEGP_SetTime, AEGP_SetARGB),
    DELETING(kPersistentDataSuite4),
};

}  // namespace host
