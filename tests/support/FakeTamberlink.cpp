#include "FakeTamberlink.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstring>
#include <utility>

FakeTamberlink fake_tamberlink;

namespace {

uint32_t Record(const std::string& call, uint32_t result = 0) {
  fake_tamberlink.calls.push_back(call);
  return result;
}

void Write(bool* out, std::optional<bool> value) {
  if (value) *out = *value;
}

void ExpectEndOfBuffer(const char* end) {
  // The address sanitizer's, if this program has it.
  static const auto isPoisoned = reinterpret_cast<int (*)(const volatile void*)>(
      dlsym(RTLD_DEFAULT, "__asan_address_is_poisoned"));
  if (isPoisoned && !isPoisoned(end)) Record("a buffer that is too long");
}

// Writes no terminator if the text fills the buffer.
void Fill(char* buffer, const std::string& text, size_t size) {
  std::memcpy(buffer, text.c_str(), std::min(text.size() + 1, size));
}

std::string Quoted(const char* text) {
  return "'" + std::string(text) + "'";
}

uint32_t HandleOpenExistingDocument(const char* path, char* list, uint64_t* size, int32_t* count) {
  const std::string call = "HandleOpenExistingDocument " + Quoted(path) + " " + Quoted(list) +
                           " of " + std::to_string(*size) + ", " + std::to_string(*count);
  const auto answer = fake_tamberlink.open.front();
  if (fake_tamberlink.open.size() > 1) fake_tamberlink.open.pop_front();
  Fill(list, answer.text, 0x20000);
  *size = answer.size;
  *count = answer.count;
  return Record(call, answer.result);
}

uint32_t InvokeResolveDialog(char* list, uint64_t* size) {
  const std::string call =
      "InvokeResolveDialog " + std::to_string(std::strlen(list)) + " of " + std::to_string(*size);
  Fill(list, fake_tamberlink.chosen, 0x20000);
  return Record(call);
}

}  // namespace

TBKLoader* FakeTamberlink::Install() {
  TBKLoader* loader = TBKLoader::GetThisSharedInstance(TAMBERLINK_FRAMEWORK);
  if (!loader) return nullptr;
  loader->pfHandleOpenExistingDocument = HandleOpenExistingDocument;
  loader->pfInvokeResolveDialog = InvokeResolveDialog;
  loader->pfActivateChosenFonts = [](const char* path, char* list, int32_t* count) {
    *count = fake_tamberlink.chosenCount;
    return Record("ActivateChosenFonts " + Quoted(path) + " " + Quoted(list));
  };
  loader->pfInvokeRestrictedFontsDialog = [](const char* path, char* list) {
    return Record("InvokeRestrictedFontsDialog " + Quoted(path) + " " + Quoted(list));
  };
  loader->pfGetIDForDocument = [](const char* path, char* id, uint64_t* size) {
    Fill(id, std::string(300, 'i'), *size);
    return Record("GetIDForDocument " + Quoted(path) + " " + std::to_string(*size));
  };
  loader->pfHandleCreateNewDocument = [](char* id, uint64_t* size) {
    Fill(id, std::string(300, 'n'), *size);
    return Record("HandleCreateNewDocument " + std::to_string(*size));
  };
  loader->pfSetPathForDocument = [](const char* path, const char* id) {
    return Record("SetPathForDocument " + Quoted(path) + " " + std::to_string(std::strlen(id)));
  };
  loader->pfHandleSaveDocument = [](const char* path, char* id) {
    return Record("HandleSaveDocument " + Quoted(path) + " " + Quoted(id));
  };
  loader->pfHandleCloseDocument = [](const char* path, char* id) {
    return Record("HandleCloseDocument " + Quoted(path) + " " + Quoted(id));
  };
  loader->pfInitializeTamberlinkInterface = [](const char* bundleId, const char* version) {
    return Record("InitializeTamberlinkInterface " + Quoted(bundleId) + " " + Quoted(version));
  };
  loader->pfTerminateTamberlinkInterface = [] { return Record("TerminateTamberlinkInterface"); };
  loader->pfInvokeCommandDialog = [](const char* id, char* reply, bool* start) {
    std::memset(reply, 'r', 32767);
    ExpectEndOfBuffer(reply + 32767);
    Write(start, fake_tamberlink.startRequested);
    return Record("InvokeCommandDialog " + std::to_string(std::strlen(id)));
  };
  loader->pfPluginIsEnabled = [](bool showMessage, bool* isEnabled) {
    Write(isEnabled, fake_tamberlink.enabled);
    return Record(showMessage ? "PluginIsEnabled true" : "PluginIsEnabled");
  };
  loader->pfShouldShowLogin = [](bool* show) {
    Write(show, fake_tamberlink.showLogin);
    return Record("ShouldShowLogin");
  };
  loader->pfShowNotLoggedInMessageBox = [] { return Record("ShowNotLoggedInMessageBox"); };
  return loader;
}

std::vector<std::string> FakeTamberlink::TakeCalls() {
  return std::exchange(calls, {});
}
