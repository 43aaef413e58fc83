#include <fmt/format.h>

#include <charconv>
#include <cstring>
#include <string>

#include "SuiteFunction.h"

// Versions 3 and 4 differ only in `AEGP_GetApplicationBlob`. Preferences are texts, whatever the
// type by which they are set.

namespace host {
namespace {

A_Err GetApplicationBlob3(AEGP_PersistentBlobH* blob) {
  *blob = TheHost().preferences.handle();
  return A_Err_NONE;
}

A_Err GetApplicationBlob4(AEGP_PersistentType, AEGP_PersistentBlobH* blob) {
  return GetApplicationBlob3(blob);
}

A_Err GetNumSections(AEGP_PersistentBlobH, A_long* count) {
  *count = static_cast<A_long>(TheHost().preferences.sections().size());
  return A_Err_NONE;
}

A_Err DoesKeyExist(AEGP_PersistentBlobH, const A_char* section, const A_char* key,
                   A_Boolean* exists) {
  *exists = TheHost().preferences.find(section, key) ? 1 : 0;
  return A_Err_NONE;
}

A_Err GetNumKeys(AEGP_PersistentBlobH, const A_char* section, A_long* count) {
  *count = static_cast<A_long>(TheHost().preferences.countKeys(section));
  return A_Err_NONE;
}

A_Err GetString(AEGP_PersistentBlobH, const A_char* section, const A_char* key,
                const A_char* fallback, A_u_long size, A_char* buffer, A_u_long* actualSize) {
  const std::string* preference = TheHost().preferences.find(section, key);
  const std::string text = preference ? *preference : fallback ? fallback : "";
  if (actualSize) *actualSize = static_cast<A_u_long>(text.size() + 1);
  if (text.size() >= size) return A_Err_GENERIC;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return A_Err_NONE;
}

// A text that isn't a number counts as none.
template <typename Number>
A_Err GetNumber(AEGP_PersistentBlobH, const A_char* section, const A_char* key, Number fallback,
                Number* value) {
  *value = fallback;
  if (const std::string* text = TheHost().preferences.find(section, key)) {
    Number read{};
    const char* const end = text->data() + text->size();
    const auto [stop, failure] = std::from_chars(text->data(), end, read);
    if (failure == std::errc() && stop == end) *value = read;
  }
  return A_Err_NONE;
}

A_Err SetString(AEGP_PersistentBlobH, const A_char* section, const A_char* key,
                const A_char* text) {
  TheHost().preferences.set(section, key, text);
  TheHost().timeline.add(Actor::plugIn,
                         fmt::format("sets preference {} / {} to \"{}\"", section, key, text));
  return A_Err_NONE;
}

template <typename Number>
A_Err SetNumber(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key, Number value) {
  return SetString(blob, section, key, fmt::format("{}", value).c_str());
}

A_Err DeleteEntry(AEGP_PersistentBlobH, const A_char* section, const A_char* key) {
  TheHost().preferences.remove(section, key);
  TheHost().timeline.add(Actor::plugIn, fmt::format("removes preference {} / {}", section, key));
  return A_Err_NONE;
}

}  // namespace

// The functions that both versions have.
#define COUNT_SECTIONS(suite) \
  SUPPLIED(suite, AEGP_GetNumSections, Body<GetNumSections>, "blobH", "num_sectionPL")
#define LOOK_UP(suite)                                                                          \
  SUPPLIED(suite, AEGP_DoesKeyExist, Body<DoesKeyExist>, "blobH", "section_keyZ", "value_keyZ", \
           "existsPB"),                                                                         \
      SUPPLIED(suite, AEGP_GetNumKeys, Body<GetNumKeys>, "blobH", "section_keyZ", "num_keysPL")
#define GET_VALUES(suite)                                                                 \
  SUPPLIED(suite, AEGP_GetString, Body<GetString>, "blobH", "section_keyZ", "value_keyZ", \
           "default?", "buf_size", "bufZ", "actual_buf_sizePL?"),                         \
      SUPPLIED(suite, AEGP_GetLong, Body<GetNumber<A_long>>, "blobH", "section_keyZ",     \
               "value_keyZ", "defaultL", "valuePL"),                                      \
      SUPPLIED(suite, AEGP_GetFpLong, Body<GetNumber<A_FpLong>>, "blobH", "section_keyZ", \
               "value_keyZ", "defaultF", "valuePF")
#define SET_VALUES(suite)                                                                          \
  SUPPLIED(suite, AEGP_SetString, Body<SetString>, "blobH", "section_keyZ", "value_keyZ", "strZ"), \
      SUPPLIED(suite, AEGP_SetLong, Body<SetNumber<A_long>>, "blobH", "section_keyZ",              \
               "value_keyZ", "valueL"),                                                            \
      SUPPLIED(suite, AEGP_SetFpLong, Body<SetNumber<A_FpLong>>, "blobH", "section_keyZ",          \
               "value_keyZ", "valueF")
#define DELETE_ENTRY(suite) \
  SUPPLIED(suite, AEGP_DeleteEntry, Body<DeleteEntry>, "blobH", "section_keyZ", "value_keyZ")

const AEGP_PersistentDataSuite3 kPersistentDataSuite3{
    SUPPLIED(persistentData3, AEGP_GetApplicationBlob, Body<GetApplicationBlob3>, "blobPH"),
    COUNT_SECTIONS(persistentData3),
    NOT_SUPPLIED(persistentData3, AEGP_GetSectionKeyByIndex),
    LOOK_UP(persistentData3),
    NOT_SUPPLIED(persistentData3, AEGP_GetValueKeyByIndex),
    NOT_SUPPLIED(persistentData3, AEGP_GetDataHandle),
    NOT_SUPPLIED(persistentData3, AEGP_GetData),
    GET_VALUES(persistentData3),
    NOT_SUPPLIED(persistentData3, AEGP_SetDataHandle),
    NOT_SUPPLIED(persistentData3, AEGP_SetData),
    SET_VALUES(persistentData3),
    DELETE_ENTRY(persistentData3),
    NOT_SUPPLIED(persistentData3, AEGP_GetPrefsDirectory),
};

const AEGP_PersistentDataSuite4 kPersistentDataSuite4{
    SUPPLIED(persistentData4, AEGP_GetApplicationBlob, Body<GetApplicationBlob4>, "blob_type",
             "blobPH"),
    COUNT_SECTIONS(persistentData4),
    NOT_SUPPLIED(persistentData4, AEGP_GetSectionKeyByIndex),
    LOOK_UP(persistentData4),
    NOT_SUPPLIED(persistentData4, AEGP_GetValueKeyByIndex),
    NOT_SUPPLIED(persistentData4, AEGP_GetDataHandle),
    NOT_SUPPLIED(persistentData4, AEGP_GetData),
    GET_VALUES(persistentData4),
    NOT_SUPPLIED(persistentData4, AEGP_GetTime),
    NOT_SUPPLIED(persistentData4, AEGP_GetARGB),
    NOT_SUPPLIED(persistentData4, AEGP_SetDataHandle),
    NOT_SUPPLIED(persistentData4, AEGP_SetData),
    SET_VALUES(persistentData4),
    NOT_SUPPLIED(persistentData4, AEGP_SetTime),
    NOT_SUPPLIED(persistentData4, AEGP_SetARGB),
    DELETE_ENTRY(persistentData4),
    NOT_SUPPLIED(persistentData4, AEGP_GetPrefsDirectory),
};

}  // namespace host
