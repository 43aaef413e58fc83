#include "RandomSession.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Faults.h"
#include "Steps.h"

namespace host {
namespace {

using Names = std::vector<std::string>;

constexpr std::array<std::string_view, 4> kProjects{"projects/poster.aep", "projects/flyer.aep",
                                                    "other place/a b.aep", "projects/ポスター.aep"};
constexpr std::array<std::string_view, 6> kVersions{"114.0", "114.0", "113.5",
                                                    "113.9", "116.2", "112.9"};
constexpr std::array<std::string_view, 7> kLanguages{"en", "fr", "de", "es", "it", "pt", "ja"};
constexpr std::array<std::string_view, 4> kApplications{"host", "com.apple.dock",
                                                        "com.apple.finder", "com.example.other"};
constexpr std::array<std::string_view, 8> kTitles{
    "Open Project",  "Resolve Fonts",     "After Effects",      "Ouvrir un projet",
    "Abrir projeto", "Solucionar fontes", "フォントを解決する", "Preferences"};
constexpr std::array<std::string_view, 4> kClasses{"DVAMacDialog", "DVAMacDialog", "NSPanel",
                                                   "NSWindow"};
constexpr std::array<int, 10> kTickCounts{1, 1, 1, 2, 2, 3, 8, 12, 27, 40};
constexpr std::array<int, 5> kErrors{1, 7, 512, 516, 24301};
constexpr std::array<std::string_view, 7> kReportedPaths{"{length: 1}",
                                                         "{length: 300}",
                                                         "{length: 4000}",
                                                         "{utf16: [0x2F, 0xD800, 0x41]}",
                                                         "{utf16: [0x2F, 0xDC00]}",
                                                         "{utf16: [0x2F, 0xD83D, 0xDE00]}",
                                                         "{utf16: [0x2F, 0x65E5, 0x672C]}"};
constexpr std::array<std::string_view, 7> kSuites{
    "{suite: AEGP Command Suite, version: 1}", "{suite: AEGP Utility Suite, version: 13}",
    "{suite: AEGP Utility Suite, version: 7}", "{suite: AEGP Proj Suite, version: 9}",
    "{suite: AEGP Memory Suite, version: 1}",  "{suite: PF AE Adv App Suite, version: 2}",
    "{suite: AEGP Register Suite, version: 6}"};

// What a plug-in calls that follows the host's projects.
constexpr std::array<std::string_view, 17> kUsualFunctions{"AcquireSuite",
                                                           "ReleaseSuite",
                                                           "AEGP_RegisterIdleHook",
                                                           "AEGP_EnableCommand",
                                                           "AEGP_GetUniqueCommand",
                                                           "AEGP_InsertMenuCommand",
                                                           "AEGP_UpdateFontList",
                                                           "PF_RefreshAllWindows",
                                                           "AEGP_GetProjectByIndex",
                                                           "AEGP_GetProjectPath",
                                                           "AEGP_NewProject",
                                                           "AEGP_OpenProjectFromPath",
                                                           "AEGP_ProjectIsDirty",
                                                           "AEGP_FreeMemHandle",
                                                           "AEGP_LockMemHandle",
                                                           "AEGP_UnlockMemHandle",
                                                           kSendEvent};

std::string Count(Random& random, size_t most) {
  return std::to_string(1 + random.below(most));
}

// The steps of a session that is being made up, with what they leave behind.
class StepMaker {
 public:
  StepMaker(Random& random, const SessionPart& part, bool hasFaults, std::set<std::string> projects)
      : mRandom(random), mPart(part), mHasFaults(hasFaults), mProjects(std::move(projects)) {}

  // Returns steps as YAML.
  Names next() {
    switch (mRandom.below(mHasFaults ? 7 : 6)) {
      case 0:
      case 1:
        return {userStep()};
      case 2:
      case 3:
        return {timeStep()};
      case 4:
        return {mRandom.oneIn(3) ? hostStep() : openStep()};
      case 5:
        return partSteps();
      default:
        return {mRandom.oneIn(2) ? faultStep() : mPart.randomFault(mRandom)};
    }
  }

 private:
  Names partSteps() {
    const Names steps = mPart.randomSteps(mRandom);
    return steps.empty() ? Names{timeStep()} : steps;
  }

  std::string openStep() {
    if (mProjects.empty()) return saveAsStep();
    const auto project =
        std::next(mProjects.begin(), static_cast<std::ptrdiff_t>(mRandom.below(mProjects.size())));
    return fmt::format("{}: {}", mRandom.oneIn(3) ? "open by double click" : "open", *project);
  }

  std::string saveAsStep() {
    const std::string project(mRandom.among(kProjects));
    mProjects.insert(project);
    return "save as: " + project;
  }

  std::string removeStep() {
    const auto project =
        std::next(mProjects.begin(), static_cast<std::ptrdiff_t>(mRandom.below(mProjects.size())));
    return "remove: " + mProjects.extract(project).value();
  }

  std::string userStep() {
    switch (mRandom.below(10)) {
      case 0:
      case 1:
        return "edit";
      case 2:
      case 3:
        return "save";
      case 4:
        return saveAsStep();
      case 5:
        return "close";
      case 6:
        return mRandom.oneIn(2) ? "open menu" : "pick all";
      case 7:
        return fmt::format("front: {}", mRandom.among(kApplications));
      case 8:
        return mProjects.empty() || !mRandom.oneIn(4) ? openStep() : removeStep();
      default:
        return openStep();
    }
  }

  std::string timeStep() {
    if (mRandom.oneIn(4)) return "wait: " + Count(mRandom, 15);
    const int count = mRandom.among(kTickCounts);
    if (mRandom.oneIn(5)) {
      return fmt::format("tick: {{count: {}, seconds per tick: {}}}", count, mRandom.below(4));
    }
    return fmt::format("tick: {}", count);
  }

  std::string hostStep() {
    if (mRandom.oneIn(4)) return fmt::format("project path: {}", mRandom.among(kReportedPaths));
    // One after the other: the order of a call's arguments isn't defined.
    const std::string_view title = mRandom.among(kTitles);
    return fmt::format("dialog: {{title: {}, class: {}}}", title, mRandom.among(kClasses));
  }

  std::string faultStep() {
    if (mRandom.oneIn(6)) return fmt::format("refuse: {}", mRandom.among(kSuites));
    const std::set<std::string, std::less<>>& all = FunctionsThatCanFail();
    const auto any = std::next(all.begin(), static_cast<std::ptrdiff_t>(mRandom.below(all.size())));
    const std::string_view function = mRandom.oneIn(4) ? *any : mRandom.among(kUsualFunctions);
    const int result = mRandom.among(kErrors);
    // Some functions are called on every tick, and some once.
    const std::string count = Count(mRandom, mRandom.oneIn(2) ? 2 : 40);
    return fmt::format("fail: {{function: {}, result: {}, {}: {}}}", function, result,
                       mRandom.oneIn(3) ? "times" : "call", count);
  }

  Random& mRandom;
  const SessionPart& mPart;
  bool mHasFaults;
  std::set<std::string> mProjects;
};

void Append(YAML::Node& steps, const Names& yaml) {
  for (const std::string& step : yaml) steps.push_back(YAML::Load(step));
}

// The steps up to the first that needs the host come before it starts, in one session of two.
void PutStart(YAML::Node& steps, Random& random) {
  if (random.oneIn(2)) return;
  YAML::Node all;
  bool hasStarted = false;
  for (const YAML::Node& step : steps) {
    if (!hasStarted && NeedsHost(step)) {
      all.push_back("start");
      hasStarted = true;
    }
    all.push_back(step);
  }
  if (hasStarted) steps = all;
}

YAML::Node MakeHost(Random& random) {
  YAML::Node host;
  if (random.oneIn(3)) host["version"] = std::string(random.among(kVersions));
  if (random.oneIn(3)) host["language"] = std::string(random.among(kLanguages));
  if (random.oneIn(10)) host["applications"] = YAML::Load("[]");
  if (random.oneIn(20)) host["titles"] = YAML::Load("{missing fonts: Preferences}");
  host.SetStyle(YAML::EmitterStyle::Flow);
  return host;
}

YAML::Node MakeFontList(Random& random, const Names& fonts, size_t oneIn) {
  YAML::Node list(YAML::NodeType::Sequence);
  for (const std::string& font : fonts) {
    if (random.oneIn(oneIn)) list.push_back(font);
  }
  list.SetStyle(YAML::EmitterStyle::Flow);
  return list;
}

std::set<std::string> MakeProjects(Random& random, YAML::Node& root) {
  static const Names kFonts{"Garamond", "Futura", "Bodoni", "Didot", "小塚ゴシック"};
  std::set<std::string> projects;
  for (const std::string_view path : kProjects) {
    if (random.oneIn(3)) continue;
    root["projects"][std::string(path)] = MakeFontList(random, kFonts, 2);
    projects.emplace(path);
  }
  if (random.oneIn(2)) root["active fonts"] = MakeFontList(random, kFonts, 4);
  return projects;
}

}  // namespace

YAML::Node MakeRandomSession(Random& random, const SessionPart& part) {
  constexpr size_t kMostSteps = 24;
  YAML::Node root;
  root["tolerant"] = true;
  if (random.oneIn(4)) root["settles"] = false;
  if (const YAML::Node host = MakeHost(random); host.size() > 0) root["host"] = host;
  std::set<std::string> projects = MakeProjects(random, root);
  part.addRandomKeys(random, root);
  const bool hasFaults = random.oneIn(2);
  StepMaker maker(random, part, hasFaults, std::move(projects));
  YAML::Node steps(YAML::NodeType::Sequence);
  const size_t count = 1 + random.below(kMostSteps);
  for (size_t i = 0; i < count; ++i) Append(steps, maker.next());
  PutStart(steps, random);
  root["steps"] = steps;
  return root;
}

}  // namespace host
