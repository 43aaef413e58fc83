#include "FontManager.h"

#include <fmt/format.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "FontManagerRules.h"
#include "FrameworkLog.h"
#include "Operations.h"
#include "TextFile.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr char kFramework[] = "Tamberlink.framework";
// The folder of a framework begins with it, if the framework lacks an export.
constexpr char kWithout[] = "without-";
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
    if (std::ranges::find(kPolicies, text) == kPolicies.end()) {
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

Action ReadAnswersStep(const YamlValue& value) {
  return [answers = ReadAnswers(value)](Host& host) { SetUpAnswers(answers, host); };
}

void ReadProcess(const YamlValue& value, const fs::path& folder, Session& session) {
  const std::string path = value.path();
  const fs::path executable = folder / fs::path(path).filename();
  if (!fs::is_regular_file(executable)) {
    value.fail(
        fmt::format("there is no {} in {}", executable.filename().string(), folder.string()));
  }
  session.setUp.executables.emplace_back(path, executable);
  session.preparations.emplace_back([path](Host& host) {
    StartProcess(host.inFolder(path));
    host.timeline.add(Actor::desktop, fmt::format("{} runs", path));
  });
}

// Puts the framework where the session wants it.
void ReadFramework(const YamlValue& value, const fs::path& folder, FolderSetup& setUp) {
  // The only one was that of the framework in its usual place.
  setUp.links.clear();
  if (value.isText()) {
    if (value.text() != "none") value.fail("has to be none or a map");
    return;
  }
  fs::path place = ".";
  fs::path bundle = kFramework;
  const auto readMissing = [&](const YamlValue& name) {
    bundle = fs::path(kWithout + name.text()) / kFramework;
    if (fs::is_directory(folder / bundle)) return;
    name.fail(fmt::format("there is no {} in {}", bundle.string(), folder.string()));
  };
  value.readKeys({{"folder", [&](const YamlValue& path) { place = path.path(); }},
                  {"missing export", readMissing}});
  setUp.links.emplace_back((place / kFramework).lexically_normal().string(), folder / bundle);
}

std::vector<KeyReader> ReadersOf(const fs::path& folder, Session& session) {
  FolderSetup& setUp = session.setUp;
  const auto readVault = [&](const YamlValue& vault) {
    setUp.files.emplace_back("vault", ReadVault(vault));
  };
  const auto readProcesses = [&](const YamlValue& list) {
    list.forEachElement([&](const YamlValue& each) { ReadProcess(each, folder, session); });
  };
  return {{"vault", readVault},
          {"framework", [&](const YamlValue& value) { ReadFramework(value, folder, setUp); }},
          {"processes", readProcesses}};
}

RandomRules LoadRules(const fs::path& folder) {
  auto rules = YAML::Load(std::string(kFontManagerRules)).as<RandomRules>();
  rules["part's fault"] = AnswersThatFail();
  std::vector<std::string>& frameworks = rules["incomplete framework"];
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(kWithout)) continue;
    frameworks.push_back(fmt::format("framework: {{missing export: {}}}\n",
                                     name.substr(std::string_view(kWithout).size())));
  }
  // The same on every machine.
  std::ranges::sort(frameworks);
  if (frameworks.empty()) frameworks.emplace_back();
  return rules;
}

}  // namespace

SessionPart MakeFontManager(const fs::path& folder) {
  const bool hasFolder = !folder.empty();
  if (hasFolder && !fs::is_directory(folder / kFramework)) {
    throw std::runtime_error(
        fmt::format("--font-manager: there is no {} in {}", kFramework, folder.string()));
  }
  const auto needsFolder = [hasFolder](auto read) {
    return [hasFolder, read](const YamlValue& value) {
      if (!hasFolder) value.fail("needs the option --font-manager");
      return read(value);
    };
  };
  SessionPart part;
  part.addTo = [hasFolder, folder, needsFolder](Session& session) {
    if (hasFolder) {
      session.setUp.links.emplace_back(kFramework, folder / kFramework);
      session.preparations.emplace_back(FollowJournal);
      session.settling.emplace_back(Settle);
      session.finalChecks.emplace_back(CheckAnswersLeft);
    }
    std::vector<KeyReader> readers = ReadersOf(folder, session);
    for (KeyReader& reader : readers) reader.read = needsFolder(reader.read);
    return readers;
  };
  part.steps = {{"framework answers", needsFolder(ReadAnswersStep)},
                {"framework state", needsFolder(ReadState)}};
  part.expectations = {{"framework", needsFolder(ReadExpectedCalls)}};
  part.faultsOf = [](const CountedCall& call) { return AnswersThatFail(call); };
  if (hasFolder) part.randomRules = LoadRules(folder);
  return part;
}

}  // namespace host
