#include <fmt/format.h>

#include <charconv>
#include <cstring>
#include <string>

#include "Host.h"
#include "HostCall.h"
#include "SuiteTables.h"

// Versions 3 and 4 differ in `AEGP_GetApplicationBlob` alone. Preferences are texts, whatever the
// type by which they are set.

namespace host {
namespace {

A_Err GiveBlob(HostCall& call, AEGP_PersistentBlobH* blob) {
  call.needs(blob, "blobPH");
  if (const A_Err error = call.error()) return error;
  *blob = TheHost().preferences.handle();
  return A_Err_NONE;
}

A_Err GetApplicationBlob3(AEGP_PersistentBlobH* blob) {
  HostCall call(SuiteId::persistentData3, "AEGP_GetApplicationBlob", blob);
  return GiveBlob(call, blob);
}

A_Err GetApplicationBlob4(AEGP_PersistentType type, AEGP_PersistentBlobH* blob) {
  HostCall call(SuiteId::persistentData4, "AEGP_GetApplicationBlob", int64_t{type}, blob);
  return GiveBlob(call, blob);
}

// The arguments that name an entry.
void NeedsEntry(HostCall& call, AEGP_PersistentBlobH blob, const A_char* section,
                const A_char* key) {
  if (call.misuse() != A_Err_NONE) return;
  call.needsPreferences(blob);
  call.needs(section, "section_keyZ");
  call.needs(key, "value_keyZ");
}

template <SuiteId suite>
A_Err GetNumSections(AEGP_PersistentBlobH blob, A_long* count) {
  HostCall call(suite, "AEGP_GetNumSections", blob, count);
  call.needsPreferences(blob);
  call.needs(count, "num_sectionPL");
  if (const A_Err error = call.error()) return error;
  *count = static_cast<A_long>(TheHost().preferences.sections().size());
  return A_Err_NONE;
}

template <SuiteId suite>
A_Err DoesKeyExist(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
                   A_Boolean* exists) {
  HostCall call(suite, "AEGP_DoesKeyExist", blob, section, key, exists);
  NeedsEntry(call, blob, section, key);
  call.needs(exists, "existsPB");
  if (const A_Err error = call.error()) return error;
  *exists = TheHost().preferences.find(section, key) ? 1 : 0;
  return A_Err_NONE;
}

template <SuiteId suite>
A_Err GetNumKeys(AEGP_PersistentBlobH blob, const A_char* section, A_long* count) {
  HostCall call(suite, "AEGP_GetNumKeys", blob, section, count);
  call.needsPreferences(blob);
  call.needs(section, "section_keyZ");
  call.needs(count, "num_keysPL");
  if (const A_Err error = call.error()) return error;
  *count = static_cast<A_long>(TheHost().preferences.countKeys(section));
  return A_Err_NONE;
}

template <SuiteId suite>
A_Err GetString(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
                const A_char* fallback, A_u_long size, A_char* buffer, A_u_long* actualSize) {
  HostCall call(suite, "AEGP_GetString", blob, section, key, fallback, int64_t{size},
                static_cast<const void*>(buffer), actualSize);
  NeedsEntry(call, blob, section, key);
  call.needs(buffer, "bufZ");
  if (const A_Err error = call.error()) return error;
  const std::string* preference = TheHost().preferences.find(section, key);
  const std::string text = preference ? *preference : fallback ? fallback : "";
  if (actualSize) *actualSize = static_cast<A_u_long>(text.size() + 1);
  if (text.size() >= size) return A_Err_GENERIC;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return A_Err_NONE;
}

// A text that isn't a number counts as none.
template <typename Number>
A_Err GetNumber(HostCall& call, AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
                Number fallback, Number* value) {
  NeedsEntry(call, blob, section, key);
  call.needs(value, "the value");
  if (const A_Err error = call.error()) return error;
  *value = fallback;
  if (const std::string* text = TheHost().preferences.find(section, key)) {
    Number read{};
    const char* const end = text->data() + text->size();
    const auto [stop, failure] = std::from_chars(text->data(), end, read);
    if (failure == std::errc() && stop == end) *value = read;
  }
  return A_Err_NONE;
}

template <SuiteId suite>
A_Err GetLong(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key, A_long fallback,
              A_long* value) {
  HostCall call(suite, "AEGP_GetLong", blob, section, key, int64_t{fallback}, value);
  return GetNumber(call, blob, section, key, fallback, value);
}

template <SuiteId suite>
A_Err GetFpLong(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
                A_FpLong fallback, A_FpLong* value) {
  HostCall call(suite, "AEGP_GetFpLong", blob, section, key, fallback, value);
  return GetNumber(call, blob, section, key, fallback, value);
}

A_Err Set(HostCall& call, AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
          const std::string& text) {
  NeedsEntry(call, blob, section, key);
  if (const A_Err error = call.error()) return error;
  TheHost().preferences.set(section, key, text);
  TheHost().timeline.add(Actor::plugIn,
                         fmt::format("sets preference {} / {} to \"{}\"", section, key, text));
  return A_Err_NONE;
}

template <SuiteId suite>
A_Err SetString(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
                const A_char* text) {
  HostCall call(suite, "AEGP_SetString", blob, section, key, text);
  return Set(call, blob, section, key, call.needs(text, "strZ") ? text : "");
}

template <SuiteId suite>
A_Err SetLong(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key, A_long value) {
  HostCall call(suite, "AEGP_SetLong", blob, section, key, int64_t{value});
  return Set(call, blob, section, key, fmt::format("{}", value));
}

template <SuiteId suite>
A_Err SetFpLong(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
                A_FpLong value) {
  HostCall call(suite, "AEGP_SetFpLong", blob, section, key, value);
  return Set(call, blob, section, key, fmt::format("{}", value));
}

template <SuiteId suite>
A_Err DeleteEntry(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key) {
  HostCall call(suite, "AEGP_DeleteEntry", blob, section, key);
  NeedsEntry(call, blob, section, key);
  if (const A_Err error = call.error()) return error;
  TheHost().preferences.remove(section, key);
  TheHost().timeline.add(Actor::plugIn, fmt::format("removes preference {} / {}", section, key));
  return A_Err_NONE;
}

}  // namespace

const AEGP_PersistentDataSuite3 kPersistentDataSuite3{
    .AEGP_GetApplicationBlob = GetApplicationBlob3,
    .AEGP_GetNumSections = GetNumSections<SuiteId::persistentData3>,
    NOT_SUPPLIED(persistentData3, AEGP_GetSectionKeyByIndex),
    .AEGP_DoesKeyExist = DoesKeyExist<SuiteId::persistentData3>,
    .AEGP_GetNumKeys = GetNumKeys<SuiteId::persistentData3>,
    NOT_SUPPLIED(persistentData3, AEGP_GetValueKeyByIndex),
    NOT_SUPPLIED(persistentData3, AEGP_GetDataHandle),
    NOT_SUPPLIED(persistentData3, AEGP_GetData),
    .AEGP_GetString = GetString<SuiteId::persistentData3>,
    .AEGP_GetLong = GetLong<SuiteId::persistentData3>,
    .AEGP_GetFpLong = GetFpLong<SuiteId::persistentData3>,
    NOT_SUPPLIED(persistentData3, AEGP_SetDataHandle),
    NOT_SUPPLIED(persistentData3, AEGP_SetData),
    .AEGP_SetString = SetString<SuiteId::persistentData3>,
    .AEGP_SetLong = SetLong<SuiteId::persistentData3>,
    .AEGP_SetFpLong = SetFpLong<SuiteId::persistentData3>,
    .AEGP_DeleteEntry = DeleteEntry<SuiteId::persistentData3>,
    NOT_SUPPLIED(persistentData3, AEGP_GetPrefsDirectory),
};

const AEGP_PersistentDataSuite4 kPersistentDataSuite4{
    .AEGP_GetApplicationBlob = GetApplicationBlob4,
    .AEGP_GetNumSections = GetNumSections<SuiteId::persistentData4>,
    NOT_SUPPLIED(persistentData4, AEGP_GetSectionKeyByIndex),
    .AEGP_DoesKeyExist = DoesKeyExist<SuiteId::persistentData4>,
    .AEGP_GetNumKeys = GetNumKeys<SuiteId::persistentData4>,
    NOT_SUPPLIED(persistentData4, AEGP_GetValueKeyByIndex),
    NOT_SUPPLIED(persistentData4, AEGP_GetDataHandle),
    NOT_SUPPLIED(persistentData4, AEGP_GetData),
    .AEGP_GetString = GetString<SuiteId::persistentData4>,
    .AEGP_GetLong = GetLong<SuiteId::persistentData4>,
    .AEGP_GetFpLong = GetFpLong<SuiteId::persistentData4>,
    NOT_SUPPLIED(persistentData4, AEGP_GetTime),
    NOT_SUPPLIED(persistentData4, AEGP_GetARGB),
    NOT_SUPPLIED(persistentData4, AEGP_SetDataHandle),
    NOT_SUPPLIED(persistentData4, AEGP_SetData),
    .AEGP_SetString = SetString<SuiteId::persistentData4>,
    .AEGP_SetLong = SetLong<SuiteId::persistentData4>,
    .AEGP_SetFpLong = SetFpLong<SuiteId::persistentData4>,
    NOT_SUPPLIED(persistentData4, AEGP_SetTime),
    NOT_SUPPLIED(persistentData4, AEGP_SetARGB),
    .AEGP_DeleteEntry = DeleteEntry<SuiteId::persistentData4>,
    NOT_SUPPLIED(persistentData4, AEGP_GetPrefsDirectory),
};

}  // namespace host
