#include "FontManager.h"

#include <fmt/format.h>

#include <algorithm>

#include "Answers.h"
#include "ExpectedCalls.h"
#include "FrameworkLog.h"
#include "HelperProcess.h"
#include "Operations.h"
#include "TextFile.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr char kFramework[] = "Tamberlink.framework";

Action ReadState(const YamlValue& value) {
  std::vector<std::string> lines;
  for (const auto& [key, field] : value.fields({"enabled", "show login"})) {
    lines.push_back(fmt::format("{}={}", key, field.boolean()));
  }
  return [lines](Host& host) {
    host.timeline.add(Actor::session, fmt::format("font manager: {}", Join(lines, ", ")));
    WriteLines(host.inFolder("framework-state"), lines);
  };
}

std::string ReadVault(const YamlValue& vault) {
  std::string lines;
  vault.forEachField([&](const std::string& font, const YamlValue& policy) {
    const std::string text = policy.text();
    if (std::find(kFontPolicies.begin(), kFontPolicies.end(), text) == kFontPolicies.end()) {
      policy.fail("has to be automatic, choice or restricted");
    }
    lines += fmt::format("{}\t{}\n", font, text);
  });
  return lines;
}

}  // namespace

std::vector<std::string_view> FontManager::keys() const {
  return {"vault", "framework", "processes"};
}

std::vector<std::string_view> FontManager::steps() const {
  return {"framework answers", "framework state"};
}

std::vector<std::string_view> FontManager::expectations() const {
  return {"framework"};
}

void FontManager::needsFolder(const YamlValue& value) const {
  if (mFolder.empty()) value.fail("needs the option --font-manager");
}

void FontManager::readKeys(const YamlValue& root, const std::map<std::string, YamlValue>& fields,
                           Session& session) const {
  if (mFolder.empty()) {
    for (const auto& [key, value] : fields) {
      const auto own = keys();
      if (std::find(own.begin(), own.end(), key) == own.end()) continue;
      CollectFaults([this, &each = value] { needsFolder(each); });
    }
    return;
  }
  std::string policies;
  ReadField(fields, "vault", [&](const YamlValue& vault) { policies = ReadVault(vault); });
  session.setUp.files.emplace_back("vault", policies);
  CollectFaults([&] { readFramework(root, Find(fields, "framework"), session.setUp); });
  ReadField(fields, "processes", [&](const YamlValue& processes) {
    processes.forEachElement([&](const YamlValue& process) {
      const std::string path = process.path();
      const fs::path executable = mFolder / fs::path(path).filename();
      if (!fs::is_regular_file(executable)) {
        process.fail(
            fmt::format("there is no {} in {}", executable.filename().string(), mFolder.string()));
      }
      session.setUp.executables.emplace_back(path, executable);
      session.preparations.emplace_back([path](Host& host) {
        StartHelperProcess(host.inFolder(path));
        host.timeline.add(Actor::desktop, fmt::format("{} runs", path));
      });
    });
  });
  session.preparations.emplace_back(FollowJournal);
  session.settling.emplace_back(Settle);
  session.finalChecks.emplace_back(CheckAnswersLeft);
}

void FontManager::readFramework(const YamlValue& root, const YamlValue* value,
                                FolderSetup& setup) const {
  fs::path place = ".";
  fs::path variant = ".";
  if (value && value->isText()) {
    if (value->text() != "none") value->fail("has to be none or a map");
    return;
  }
  if (value) {
    const auto fields = value->fields({"folder", "missing export"});
    if (const YamlValue* folder = Find(fields, "folder")) place = folder->path();
    if (const YamlValue* missing = Find(fields, "missing export")) {
      const std::string name = missing->text();
      if (name != "all") FindOperation(*missing, name);
      variant = "without-" + name;
    }
  }
  const fs::path bundle = mFolder / variant / kFramework;
  if (!fs::is_directory(bundle)) {
    (value ? *value : root)
        .fail(fmt::format("there is no {} in {}",
                          (variant / kFramework).lexically_normal().string(), mFolder.string()));
  }
  setup.links.emplace_back((place / kFramework).lexically_normal().string(), bundle);
}

std::vector<std::string> FontManager::faultsOf(const CountedCall& call) const {
  return AnswersThatFail(call);
}

bool FontManager::awaitsCall() const {
  return TheFrameworkLog().answersLeft.awaitCall();
}

Action FontManager::readStep(std::string_view name, const YamlValue& value) const {
  needsFolder(value);
  return name == "framework answers" ? ReadAnswers(value) : ReadState(value);
}

Check FontManager::readExpectation(std::string_view /*name*/, const YamlValue& value) const {
  needsFolder(value);
  return ReadExpectedCalls(value);
}

}  // namespace host
