#include "FontManager.h"

#include <fmt/format.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

#include "FontManagerRules.h"
#include "FrameworkLog.h"
#include "Operations.h"
#include "TextFile.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr char kFramework[] = "Tamberlink.framework";
// What the font manager does with a font.
constexpr std::array<std::string_view, 3> kPolicies{"automatic", "choice", "restricted"};

Action ReadState(const YamlValue& value) {
  std::vector<std::string> lines;
  const auto read = [&](const YamlValue& flag) {
    lines.push_back(fmt::format("{}={}", flag.key(), flag.boolean()));
  };
  value.readKeys({{"enabled", read}, {"show login", read}});
  return [lines](Host& host) {
    host.timeline.add(Actor::session, fmt::format("font manager: {}", Join(lines, ", ")));
    WriteLines(host.inFolder("framework-state"), lines);
  };
}

std::string ReadVault(const YamlValue& vault) {
  std::string lines;
  vault.forEachField([&](const YamlValue& policy) {
    const std::string text = policy.text();
    if (std::find(kPolicies.begin(), kPolicies.end(), text) == kPolicies.end()) {
      policy.fail("has to be automatic, choice or restricted");
    }
    lines += fmt::format("{}\t{}\n", policy.key(), text);
  });
  return lines;
}

// Starts a process that runs beside a session, as the plug-in finds it among the running ones.
// Waits for its first line of output. It ends when its input does, with this process.
void StartProcess(const fs::path& executable) {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    throw std::runtime_error("can't make a socket");
  }
  const pid_t process = fork();
  if (process < 0) throw std::runtime_error("can't make a process");
  if (process == 0) {
    dup2(ends[1], STDIN_FILENO);
    dup2(ends[1], STDOUT_FILENO);
    execl(executable.c_str(), executable.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  close(ends[1]);
  char letter = '\0';
  while (letter != '\n' && read(ends[0], &letter, 1) == 1) continue;
  if (letter == '\n') return;
  close(ends[0]);
  waitpid(process, nullptr, 0);
  throw std::runtime_error(fmt::format("{} ended before it was ready", executable.string()));
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

void FontManager::readKeys(const YamlValue& root, Session& session) const {
  if (mFolder.empty()) {
    for (const std::string_view key : keys()) {
      if (const auto value = root.find(key)) CollectFaults([&] { needsFolder(*value); });
    }
    return;
  }
  std::string policies;
  if (const auto vault = root.find("vault")) CollectFaults([&] { policies = ReadVault(*vault); });
  session.setUp.files.emplace_back("vault", policies);
  CollectFaults([&] { readFramework(root, session.setUp); });
  if (const auto processes = root.find("processes")) {
    processes->forEachElement([&](const YamlValue& process) { readProcess(process, session); });
  }
  session.preparations.emplace_back(FollowJournal);
  session.settling.emplace_back(Settle);
  session.finalChecks.emplace_back(CheckAnswersLeft);
}

void FontManager::readProcess(const YamlValue& value, Session& session) const {
  const std::string path = value.path();
  const fs::path executable = mFolder / fs::path(path).filename();
  if (!fs::is_regular_file(executable)) {
    value.fail(
        fmt::format("there is no {} in {}", executable.filename().string(), mFolder.string()));
  }
  session.setUp.executables.emplace_back(path, executable);
  session.preparations.emplace_back([path](Host& host) {
    StartProcess(host.inFolder(path));
    host.timeline.add(Actor::desktop, fmt::format("{} runs", path));
  });
}

void FontManager::readFramework(const YamlValue& root, FolderSetup& setup) const {
  fs::path place = ".";
  fs::path variant = ".";
  const std::optional<YamlValue> value = root.find("framework");
  if (value && value->isText()) {
    if (value->text() != "none") value->fail("has to be none or a map");
    return;
  }
  const auto readMissing = [&](const YamlValue& missing) {
    const std::string name = missing.text();
    if (name != "all") FindOperation(missing, name);
    variant = "without-" + name;
  };
  if (value) {
    value->readKeys({{"folder", [&](const YamlValue& folder) { place = folder.path(); }},
                     {"missing export", readMissing}});
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

Action FontManager::readStep(const YamlValue& value) const {
  needsFolder(value);
  if (value.key() == "framework state") return ReadState(value);
  return [answers = ReadAnswers(value)](Host& host) { SetUpAnswers(answers, host); };
}

Check FontManager::readExpectation(const YamlValue& value) const {
  needsFolder(value);
  return ReadExpectedCalls(value);
}

void FontManager::addRandomRules(RandomRules& rules) const {
  if (mFolder.empty()) return;
  static const RandomRules kRules = [] {
    auto own = YAML::Load(std::string(kFontManagerRules)).as<RandomRules>();
    own["part's fault"] = AnswersThatFail();
    return own;
  }();
  for (const auto& [name, texts] : kRules) rules[name] = texts;
}

}  // namespace host
