#include <fmt/format.h>

#include <cstring>
#include <string>

#include "Host.h"
#include "SuiteTables.h"

namespace host {
namespace {

A_Err GetApplicationBlob(AEGP_PersistentBlobH* blob) {
  if (const A_Err fault = Fault("AEGP_GetApplicationBlob")) return fault;
  *blob = TheHost().preferencesHandle();
  return A_Err_NONE;
}

A_Err SetString(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
                const A_char* text) {
  if (const A_Err fault = Fault("AEGP_SetString")) return fault;
  if (blob != TheHost().preferencesHandle()) return A_Err_GENERIC;
  TheHost().preferences[section][key] = text;
  TheHost().timeline.add(Actor::plugIn,
                         fmt::format("sets preference {} / {} to \"{}\"", section, key, text));
  return A_Err_NONE;
}

A_Err GetString(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
                const A_char* fallback, A_u_long size, char* buffer, A_u_long* actualSize) {
  if (const A_Err fault = Fault("AEGP_GetString")) return fault;
  if (blob != TheHost().preferencesHandle() || size == 0) return A_Err_GENERIC;
  const std::string* preference = TheHost().findPreference(section, key);
  const std::string text = preference ? *preference : fallback ? fallback : "";
  if (text.size() >= size) return A_Err_GENERIC;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  if (actualSize) *actualSize = static_cast<A_u_long>(text.size() + 1);
  return A_Err_NONE;
}

}  // namespace

const AEGP_PersistentDataSuite3 kPersistentDataSuite3{
    .AEGP_GetApplicationBlob = GetApplicationBlob,
    NOT_SUPPLIED(AEGP_GetNumSections),
    NOT_SUPPLIED(AEGP_GetSectionKeyByIndex),
    NOT_SUPPLIED(AEGP_DoesKeyExist),
    NOT_SUPPLIED(AEGP_GetNumKeys),
    NOT_SUPPLIED(AEGP_GetValueKeyByIndex),
    NOT_SUPPLIED(AEGP_GetDataHandle),
    NOT_SUPPLIED(AEGP_GetData),
    NOT_SUPPLIED(AEGP_GetString),
    NOT_SUPPLIED(AEGP_GetLong),
    NOT_SUPPLIED(AEGP_GetFpLong),
    NOT_SUPPLIED(AEGP_SetDataHandle),
    NOT_SUPPLIED(AEGP_SetData),
    .AEGP_SetString = SetString,
    NOT_SUPPLIED(AEGP_SetLong),
    NOT_SUPPLIED(AEGP_SetFpLong),
    NOT_SUPPLIED(AEGP_DeleteEntry),
    NOT_SUPPLIED(AEGP_GetPrefsDirectory),
};

const AEGP_PersistentDataSuite4 kPersistentDataSuite4{
    NOT_SUPPLIED(AEGP_GetApplicationBlob),
    NOT_SUPPLIED(AEGP_GetNumSections),
    NOT_SUPPLIED(AEGP_GetSectionKeyByIndex),
    NOT_SUPPLIED(AEGP_DoesKeyExist),
    NOT_SUPPLIED(AEGP_GetNumKeys),
    NOT_SUPPLIED(AEGP_GetValueKeyByIndex),
    NOT_SUPPLIED(AEGP_GetDataHandle),
    NOT_SUPPLIED(AEGP_GetData),
    .AEGP_GetString = GetString,
    NOT_SUPPLIED(AEGP_GetLong),
    NOT_SUPPLIED(AEGP_GetFpLong),
    NOT_SUPPLIED(AEGP_GetTime),
    NOT_SUPPLIED(AEGP_GetARGB),
    NOT_SUPPLIED(AEGP_SetDataHandle),
    NOT_SUPPLIED(AEGP_SetData),
    NOT_SUPPLIED(AEGP_SetString),
    NOT_SUPPLIED(AEGP_SetLong),
    NOT_SUPPLIED(AEGP_SetFpLong),
    NOT_SUPPLIED(AEGP_SetTime),
    NOT_SUPPLIED(AEGP_SetARGB),
    NOT_SUPPLIED(AEGP_DeleteEntry),
    NOT_SUPPLIED(AEGP_GetPrefsDirectory),
};

}  // namespace host
