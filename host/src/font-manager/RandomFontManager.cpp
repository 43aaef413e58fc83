#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <filesystem>

#include "Answers.h"
#include "FontManager.h"
#include "Operations.h"

// What a random session has of the font manager.

namespace host {
namespace {

// Those that plug-ins call, the most important one several times.
constexpr std::array<std::string_view, 16> kCalledOperations{"HandleOpenExistingDocument",
                                                             "HandleOpenExistingDocument",
                                                             "HandleOpenExistingDocument",
                                                             "InvokeResolveDialog",
                                                             "InvokeResolveDialog",
                                                             "ActivateChosenFonts",
                                                             "GetIDForDocument",
                                                             "HandleCloseDocument",
                                                             "HandleCreateNewDocument",
                                                             "HandleSaveDocument",
                                                             "InitializeTamberlinkInterface",
                                                             "InvokeCommandDialog",
                                                             "InvokeRestrictedFontsDialog",
                                                             "PluginIsEnabled",
                                                             "SetPathForDocument",
                                                             "TerminateTamberlinkInterface"};

}  // namespace

void FontManager::addRandomKeys(Random& random, YAML::Node& session) const {
  if (mFolder.empty()) return;
  for (const char* font : {"Garamond", "Futura", "Bodoni", "Didot", "小塚ゴシック"}) {
    if (random.oneIn(4)) continue;
    session["vault"][font] = random.oneIn(2) ? std::string(kFontPolicies.front())
                                             : std::string(random.among(kFontPolicies));
  }
  if (random.oneIn(15)) {
    const Operation& operation = kOperations[random.below(kOperations.size())];
    if (!std::filesystem::is_directory(mFolder / fmt::format("without-{}", operation.name))) return;
    session["framework"]["missing export"] = std::string(operation.name);
  } else if (random.oneIn(15)) {
    session["framework"]["folder"] = "Apps/Core/PluginFiles";
    session["files"]["Library/Veldrane/com.veldrane.Oxbrim-LaunchInfo.conf"] =
        "oxbrim.version=16\noxbrim.path=${session}/Apps/Core/Oxbrim\n";
  } else if (random.oneIn(40)) {
    session["framework"] = "none";
  }
}

std::vector<std::string> FontManager::randomSteps(Random& random) const {
  if (mFolder.empty()) return {};
  const std::string ticks = fmt::format("tick: {}", 1 + random.below(12));
  switch (random.below(6)) {
    case 0:
      // The plug-in asks again after this time.
      return {"framework state: {enabled: false, show login: true}", "wait: 10", ticks};
    case 1:
      return {"framework state: {enabled: true}", "wait: 10", ticks};
    case 2:
      return {"framework answers: [InvokeCommandDialog: {start: true}]", "pick all", ticks};
    case 3:
      return {"framework state: {enabled: false}", "wait: 10", "tick: 30",
              "framework state: {enabled: true}",  "wait: 10", ticks};
    case 4:
      return {"framework answers: [InvokeResolveDialog: {choose: [Futura, Bodoni]}]"};
    default:
      return {
          "framework answers: [InvokeResolveDialog: {choose: [Garamond, Didot, 小塚ゴシック]}]"};
  }
}

std::string FontManager::randomFault(Random& random) const {
  if (mFolder.empty()) return "tick";
  const std::string_view operation = random.among(kCalledOperations);
  const CountedCall call{std::string(operation), 1 + static_cast<int64_t>(random.below(2))};
  const std::vector<std::string> faults = AnswersThatFail(call);
  return faults[random.below(faults.size())];
}

}  // namespace host
