#include "FontManager.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "TextFile.h"

namespace host {
namespace {

constexpr char kFramework[] = "Tamberlink.framework";

// An operation of the framework, and the names that the journal gives to its arguments.
struct Operation {
  std::string_view name;
  std::vector<std::string_view> arguments;
};

const std::vector<Operation> kOperations{
    {"ActivateChosenFonts", {"path", "list", "count"}},
    {"CreateMenusFromJSONBuffer", {}},
    {"GetAPIVersion", {}},
    {"GetIDForDocument", {"path", "size", "id"}},
    {"GetMenus", {}},
    {"GetSettings", {}},
    {"GetSocketPort", {}},
    {"HandleCloseDocument", {"path", "id"}},
    {"HandleCreateNewDocument", {"size", "id"}},
    {"HandleMenuSelection", {}},
    {"HandleOpenExistingDocument", {"path", "size", "list", "count"}},
    {"HandleSaveDocument", {"path", "id"}},
    {"IdleEvent", {}},
    {"InitializeTamberlinkInterface", {"bundleId", "version"}},
    {"InvokeCommandDialog", {"id", "reply", "start"}},
    {"InvokeResolveDialog", {"list", "size"}},
    {"InvokeRestrictedFontsDialog", {"path", "list"}},
    {"PluginIsEnabled", {"showMessage", "enabled"}},
    {"ProcessPanelMessages", {}},
    {"RegisterPlugPlug", {}},
    {"SetPathForDocument", {"path", "id"}},
    {"TerminateTamberlinkInterface", {}},
    {"UpdateDocumentFontUsage", {}},
    {"SetRebuildWorkgroupsMenuCallback", {}},
    {"ShowNotLoggedInMessageBox", {}},
    {"ShouldShowLogin", {"show"}},
};

const Operation& FindOperation(const YamlValue& value, const std::string& name) {
  const auto found = std::find_if(kOperations.begin(), kOperations.end(),
                                  [&](const Operation& each) { return each.name == name; });
  if (found == kOperations.end()) {
    value.fail(fmt::format("the framework has no operation '{}'", name));
  }
  return *found;
}

// A framework call from the journal. Paths are relative to the session folder.
struct FrameworkCall {
  int64_t tick = 0;
  std::string operation;
  std::map<std::string, std::string> fields;  // arguments, out-arguments and `result`
  std::string text;                           // operation and fields for a reader
};

// What the framework has written in the session that this process plays.
struct FrameworkLog {
  GrowingFile journal;
  std::vector<FrameworkCall> calls;            // since an expectation last took them
  std::map<std::string, int64_t> answersLeft;  // by operation, those that no call has used
};

// Never destroyed, like the host that uses it.
FrameworkLog& frameworkLog = *new FrameworkLog;

std::string Unescape(std::string_view escaped) {
  std::string text;
  for (size_t i = 0; i < escaped.size(); ++i) {
    if (escaped[i] != '\\' || i + 1 == escaped.size()) {
      text += escaped[i];
      continue;
    }
    const char kind = escaped[++i];
    text += kind == 't' ? '\t' : kind == 'n' ? '\n' : kind;
  }
  return text;
}

FrameworkCall ParseJournalLine(const std::string& line) {
  const std::vector<std::string> parts = Split(line, '\t');
  FrameworkCall call;
  call.operation = call.text = parts.front();
  for (size_t i = 1; i < parts.size(); ++i) {
    const size_t equals = parts[i].find('=');
    if (equals == std::string::npos) continue;
    call.fields[parts[i].substr(0, equals)] = Unescape(parts[i].substr(equals + 1));
    call.text += "  " + parts[i];
  }
  return call;
}

void TakeJournal(Timeline& timeline) {
  for (std::string& line : frameworkLog.journal.newLines()) {
    timeline.shortenPaths(line);
    FrameworkCall call = ParseJournalLine(line);
    call.tick = timeline.tick;
    if (int64_t& left = frameworkLog.answersLeft[call.operation]; left > 0) --left;
    timeline.show(Actor::framework, call.text);
    frameworkLog.calls.push_back(std::move(call));
  }
}

void FollowJournal(Host& host) {
  const int journal = open("journal", O_RDONLY | O_CREAT | O_CLOEXEC, 0600);
  if (journal < 0) throw std::runtime_error("can't open journal");
  frameworkLog.journal.follow(journal);
  host.timeline.addSource([&timeline = host.timeline] { TakeJournal(timeline); });
}

void CheckAnswersLeft(Host& host) {
  for (const auto& [operation, count] : frameworkLog.answersLeft) {
    if (count == 0) continue;
    host.report(Finding::setup,
                fmt::format("{} answer(s) of {} were never asked for", count, operation));
  }
}

struct ExpectedCall {
  int64_t tick = 0;
  std::string operation;
  std::vector<std::pair<std::string, std::string>> fields;
};

std::string Show(const ExpectedCall& call) {
  std::string text = fmt::format("{} {}", call.tick, call.operation);
  for (const auto& [name, value] : call.fields) text += fmt::format("  {}={}", name, value);
  return EscapeControls(text);
}

// Reads "TICK OPERATION", or a map from that text to arguments and results.
ExpectedCall ReadExpectedCall(const YamlValue& value) {
  ExpectedCall call;
  const bool hasFields = value.isMap();
  const auto entries = hasFields ? value.fields() : std::vector<YamlValue::Field>();
  if (hasFields && entries.size() != 1) value.fail("has to be one call");
  const std::string head = hasFields ? entries.front().first : value.text();
  std::istringstream words(head);
  std::string rest;
  if (!(words >> call.tick >> call.operation) || words >> rest) {
    value.fail(fmt::format("'{}' has to be a tick and an operation", head));
  }
  const Operation& operation = FindOperation(value, call.operation);
  if (!hasFields) return call;
  for (const auto& [name, field] : entries.front().second.fields()) {
    const auto& known = operation.arguments;
    if (name != "result" && std::find(known.begin(), known.end(), name) == known.end()) {
      field.fail(fmt::format("{} has no argument '{}'", operation.name, name));
    }
    call.fields.emplace_back(name, field.text());
  }
  return call;
}

// Compares as numbers if both are: "0x10" is the same as "16".
bool SameValue(const std::string& one, const std::string& other) {
  if (one == other) return true;
  char* oneEnd = nullptr;
  char* otherEnd = nullptr;
  const long long oneNumber = std::strtoll(one.c_str(), &oneEnd, 0);
  const long long otherNumber = std::strtoll(other.c_str(), &otherEnd, 0);
  return !one.empty() && !other.empty() && *oneEnd == 0 && *otherEnd == 0 &&
         oneNumber == otherNumber;
}

bool Matches(const ExpectedCall& expected, const FrameworkCall& call) {
  return expected.tick == call.tick && expected.operation == call.operation &&
         std::all_of(expected.fields.begin(), expected.fields.end(), [&](const auto& field) {
           const auto found = call.fields.find(field.first);
           return found != call.fields.end() && SameValue(field.second, found->second);
         });
}

// Lists the calls as a diff: "-" marks a call that was only expected, "+" one that was only found.
std::string CompareCalls(const std::vector<ExpectedCall>& expected,
                         const std::vector<FrameworkCall>& found) {
  std::string lines;
  bool differs = false;
  for (size_t i = 0; i < std::max(expected.size(), found.size()); ++i) {
    const bool matches = i < expected.size() && i < found.size() && Matches(expected[i], found[i]);
    differs = differs || !matches;
    if (i < expected.size()) {
      lines += fmt::format("\n    {} {}", matches ? ' ' : '-', Show(expected[i]));
    }
    if (i < found.size() && !matches) {
      lines += fmt::format("\n    + {} {}", found[i].tick, found[i].text);
    }
  }
  return differs ? "    (- expected, + found)" + lines : "";
}

// Flattens lists within the list: a variable can stand for several calls, or for none.
void ReadExpectedCalls(const YamlValue& value, std::vector<ExpectedCall>& calls, int depth = 0) {
  constexpr int kMostLists = 8;
  if (depth > kMostLists) value.fail("has too many lists within lists");
  for (const YamlValue& call : value.list()) {
    if (call.isList()) {
      ReadExpectedCalls(call, calls, depth + 1);
    } else {
      calls.push_back(ReadExpectedCall(call));
    }
  }
}

std::string ReadAnswerField(const YamlValue& field) {
  if (field.key() == "choose" || field.key() == "text") return Join(field.texts(), ";");
  if (field.key() == "start") return field.boolean() ? "true" : "false";
  if (field.key() == "result") return fmt::format("{:#010x}", field.integer(0, 0xFFFFFFFF));
  return fmt::format("{}", field.integer(std::numeric_limits<int32_t>::min(),
                                         std::numeric_limits<int64_t>::max()));
}

Action ReadAnswers(const YamlValue& value) {
  std::vector<std::pair<std::string, std::string>> answers;
  for (const YamlValue& answer : value.list()) {
    for (const auto& [operation, fields] : answer.fields()) {
      FindOperation(fields, operation);
      std::string line = operation;
      for (const auto& [key, field] :
           fields.fields({"choose", "start", "result", "text", "count", "size"})) {
        line += fmt::format("\t{}={}", key, ReadAnswerField(field));
      }
      answers.emplace_back(operation, line);
    }
  }
  return [answers](Host& host) {
    host.timeline.drain();
    for (const auto& [operation, line] : answers) {
      AppendLine(host.inFolder("framework-answers"), line);
      ++frameworkLog.answersLeft[operation];
    }
  };
}

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
  static constexpr std::array<std::string_view, 3> kPolicies{"automatic", "choice", "restricted"};
  std::string lines;
  for (const auto& [font, policy] : vault.fields()) {
    const std::string text = policy.text();
    if (std::find(kPolicies.begin(), kPolicies.end(), text) == kPolicies.end()) {
      policy.fail("has to be automatic, choice or restricted");
    }
    lines += fmt::format("{}\t{}\n", font, text);
  }
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
      if (std::find(own.begin(), own.end(), key) != own.end()) needsFolder(value);
    }
    return;
  }
  const YamlValue* vault = Find(fields, "vault");
  session.setUp.files.emplace_back("vault", vault ? ReadVault(*vault) : "");
  readFramework(root, Find(fields, "framework"), session.setUp);
  if (const YamlValue* processes = Find(fields, "processes")) {
    for (const YamlValue& process : processes->list()) {
      const std::string path = process.path();
      session.setUp.processes.emplace_back(path, mFolder / std::filesystem::path(path).filename());
      session.preparations.emplace_back(
          [path](Host& host) { host.timeline.add(Actor::desktop, fmt::format("{} runs", path)); });
    }
  }
  session.preparations.emplace_back(FollowJournal);
  session.finalChecks.emplace_back(CheckAnswersLeft);
}

void FontManager::readFramework(const YamlValue& root, const YamlValue* value,
                                FolderSetup& setup) const {
  namespace fs = std::filesystem;
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

Action FontManager::readStep(std::string_view name, const YamlValue& value) const {
  needsFolder(value);
  return name == "framework answers" ? ReadAnswers(value) : ReadState(value);
}

Check FontManager::readExpectation(std::string_view /*name*/, const YamlValue& value) const {
  needsFolder(value);
  std::vector<ExpectedCall> expected;
  ReadExpectedCalls(value, expected);
  return [expected](Host& host) {
    host.timeline.drain();
    return CompareCalls(expected, std::exchange(frameworkLog.calls, {}));
  };
}

}  // namespace host
