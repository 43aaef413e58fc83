#include "Tamberlink.h"

#include <algorithm>

#include "Call.h"
#include "Documents.h"
#include "ErrorCodes.h"
#include "Fonts.h"
#include "SessionFolder.h"

using CoreErrorCodes::kAlreadyInitialized;
using CoreErrorCodes::kIndexOutOfRange;
using CoreErrorCodes::kNotFound;
using CoreErrorCodes::kSuccess;
using GFile::kOpenFailed;
using tamberlink::activateFonts;
using tamberlink::areActive;
using tamberlink::Call;
using tamberlink::Documents;
using tamberlink::findMissingFonts;
using tamberlink::join;
using tamberlink::MissingFonts;
using tamberlink::readBuffer;
using tamberlink::readFlag;
using tamberlink::readLines;
using tamberlink::split;
using tamberlink::Strings;
using tamberlink::writeBuffer;

namespace {

constexpr uint64_t kIdSize = 256;
constexpr uint64_t kListSize = 0x20000;

Documents& documents() {
  static Documents instance;
  return instance;
}

// Changes nothing unless the list fits: callers repeat a call that failed so, and would lose the
// first one's count.
uint32_t openDocument(const char* path, char* list, uint64_t capacity, int32_t& count) {
  count = 0;
  writeBuffer(list, capacity, {});
  const std::optional<Strings> used = readLines(path);
  if (!used) return kOpenFailed;
  const MissingFonts missing = findMissingFonts(*used);
  const bool restricted = !missing.restricted.empty();
  const Strings& listed = restricted ? missing.restricted : missing.choice;
  if (!writeBuffer(list, capacity, join(listed))) return kIndexOutOfRange;
  documents().open(path);
  activateFonts(missing.automatic);
  count = static_cast<int32_t>(missing.automatic.size());
  return restricted ? kAlreadyInitialized : kSuccess;
}

uint32_t activateChosen(const Strings& chosen, int32_t& count) {
  MissingFonts missing = findMissingFonts(chosen);
  activateFonts(missing.automatic);
  activateFonts(missing.choice);
  count = static_cast<int32_t>(missing.automatic.size() + missing.choice.size());
  return areActive(chosen) ? kSuccess : kNotFound;
}

// Picks offered fonts only, so that they fit where the offered ones did.
Strings pickFonts(const Strings& offered, const Strings& wanted) {
  Strings picked;
  std::copy_if(offered.begin(), offered.end(), std::back_inserter(picked),
               [&wanted](const std::string& font) {
                 return std::find(wanted.begin(), wanted.end(), font) != wanted.end();
               });
  return picked;
}

uint32_t endWithId(Call& call, const std::optional<std::string>& identifier, char* id,
                   uint64_t& size) {
  const bool fits = writeBuffer(id, size, identifier.value_or(""));
  call.leaveText("id", id, size);
  call.leaveSize(size);
  if (!identifier) return call.end(kNotFound);
  return call.end(fits ? kSuccess : kIndexOutOfRange);
}

}  // namespace

uint32_t ActivateChosenFonts(const char* path, char* list, int32_t* count) noexcept {
  Call call(__func__);
  const std::string text = readBuffer(list, kListSize);
  call.note("path", path);
  call.note("list", text);
  const uint32_t result = activateChosen(split(text, '\n'), *count);
  call.leaveCount(*count);
  return call.end(result);
}

uint32_t GetIDForDocument(const char* path, char* id, uint64_t* size) noexcept {
  Call call(__func__);
  call.note("path", path);
  call.note("size", *size);
  return endWithId(call, documents().find(path), id, *size);
}

uint32_t HandleCloseDocument(const char* path, char* id) noexcept {
  Call call(__func__);
  call.note("path", path);
  call.note("id", readBuffer(id, kIdSize));
  return call.end(documents().close(path) ? kSuccess : kNotFound);
}

uint32_t HandleCreateNewDocument(char* id, uint64_t* size) noexcept {
  Call call(__func__);
  call.note("size", *size);
  return endWithId(call, documents().create(), id, *size);
}

uint32_t HandleOpenExistingDocument(const char* path, char* list, uint64_t* size,
                                    int32_t* count) noexcept {
  Call call(__func__);
  call.note("path", path);
  call.note("size", *size);
  const uint32_t result = openDocument(path, list, *size, *count);
  call.leaveText("list", list, *size);
  call.leaveSize(*size);
  call.leaveCount(*count);
  return call.end(result);
}

uint32_t HandleSaveDocument(const char* path, char* id) noexcept {
  Call call(__func__);
  call.note("path", path);
  call.note("id", readBuffer(id, kIdSize));
  return call.end(documents().find(path) ? kSuccess : kNotFound);
}

uint32_t InitializeTamberlinkInterface(const char* bundleId, const char* version) noexcept {
  Call call(__func__);
  call.note("bundleId", bundleId);
  call.note("version", version);
  return call.end(kSuccess);
}

uint32_t InvokeCommandDialog(const char* id, char* reply, bool* start) noexcept {
  Call call(__func__);
  call.note("id", readBuffer(id, kIdSize));
  *reply = '\0';
  *start = call.answer("start") == "true";
  call.note("reply", reply);
  call.noteFlag("start", *start);
  return call.end(kSuccess);
}

uint32_t InvokeResolveDialog(char* list, uint64_t* size) noexcept {
  Call call(__func__);
  const std::string text = readBuffer(list, *size);
  call.note("list", text);
  call.note("size", *size);
  const Strings picked =
      pickFonts(split(text, '\n'), split(call.answer("choose").value_or(""), ';'));
  const bool fits = writeBuffer(list, *size, join(picked));
  call.leaveText("list", list, *size);
  call.leaveSize(*size);
  return call.end(fits ? kSuccess : kIndexOutOfRange);
}

uint32_t InvokeRestrictedFontsDialog(const char* path, char* list) noexcept {
  Call call(__func__);
  call.note("path", path);
  call.note("list", readBuffer(list, kListSize));
  return call.end(kSuccess);
}

uint32_t PluginIsEnabled(bool showMessage, bool* enabled) noexcept {
  Call call(__func__);
  call.noteFlag("showMessage", showMessage);
  *enabled = readFlag("enabled", true);
  call.noteFlag("enabled", *enabled);
  return call.end(kSuccess);
}

uint32_t SetPathForDocument(const char* path, const char* id) noexcept {
  Call call(__func__);
  const std::string identifier = readBuffer(id, kIdSize);
  call.note("path", path);
  call.note("id", identifier);
  return call.end(documents().setPath(identifier, path) ? kSuccess : kNotFound);
}

uint32_t TerminateTamberlinkInterface() noexcept {
  return Call(__func__).end(kSuccess);
}

uint32_t ShowNotLoggedInMessageBox() noexcept {
  return Call(__func__).end(kSuccess);
}

uint32_t ShouldShowLogin(bool* show) noexcept {
  Call call(__func__);
  *show = readFlag("show login", false);
  call.noteFlag("show", *show);
  return call.end(kSuccess);
}

void CreateMenusFromJSONBuffer() noexcept {
  Call(__func__).end();
}
void GetAPIVersion() noexcept {
  Call(__func__).end();
}
void GetMenus() noexcept {
  Call(__func__).end();
}
void GetSettings() noexcept {
  Call(__func__).end();
}
void GetSocketPort() noexcept {
  Call(__func__).end();
}
void HandleMenuSelection() noexcept {
  Call(__func__).end();
}
void IdleEvent() noexcept {
  Call(__func__).end();
}
void ProcessPanelMessages() noexcept {
  Call(__func__).end();
}
void RegisterPlugPlug() noexcept {
  Call(__func__).end();
}
void UpdateDocumentFontUsage() noexcept {
  Call(__func__).end();
}
void SetRebuildWorkgroupsMenuCallback() noexcept {
  Call(__func__).end();
}
