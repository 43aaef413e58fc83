#include "FontManager.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <deque>
#include <limits>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>

#include "ActivationRules.h"
#include "HelperProcess.h"
#include "TextFile.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr char kFramework[] = "Tamberlink.framework";

// An operation of the framework, and the names that the journal gives to its arguments.
struct Operation {
  std::string_view name;
  std::vector<std::string_view> arguments;

  bool has(std::string_view argument) const {
    return std::find(arguments.begin(), arguments.end(), argument) != arguments.end();
  }
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
  std::vector<Argument> fields;  // arguments, out-arguments and `result`, in the journal's order
  std::string text;              // operation and fields for a reader
};

// The answers that no call has used.
class AnswersLeft {
 public:
  // `call` is the number of the call that the answer is for, or 0 for the next one. A fault is an
  // answer that isn't a user's.
  void add(const std::string& operation, int64_t call, bool isFault) {
    if (call > 0) {
      mOfCalls.insert({operation, call});
    } else {
      mNext[operation].push_back(isFault);
    }
  }
  // Returns whether the call gets a fault.
  bool take(const std::string& operation, int64_t call) {
    bool isFault = mOfCalls.erase({operation, call}) > 0;
    if (std::deque<bool>& next = mNext[operation]; !next.empty()) {
      isFault = isFault || next.front();
      next.pop_front();
    }
    return isFault;
  }
  bool awaitCall() const { return !mOfCalls.empty(); }
  // How many there are by operation.
  std::map<std::string, size_t> counts() const {
    std::map<std::string, size_t> counts;
    for (const auto& [operation, next] : mNext) counts[operation] += next.size();
    for (const auto& [operation, call] : mOfCalls) ++counts[operation];
    return counts;
  }

 private:
  std::map<std::string, std::deque<bool>> mNext;
  std::set<std::pair<std::string, int64_t>> mOfCalls;
};

// What the framework has written in the session that this process plays.
struct FrameworkLog {
  GrowingFile journal;
  std::vector<FrameworkCall> calls;          // since an expectation last took them
  std::map<std::string, int64_t> callCount;  // by operation
  AnswersLeft answersLeft;
  ActivationRules rules;
  std::optional<int64_t> activationBegan;  // tick of the activation's step 1, while it runs
  bool enabled = true;                     // what the framework last said
};

// Never destroyed, like the host that uses it.
FrameworkLog& frameworkLog = *new FrameworkLog;

constexpr char kActivation[] = "activation";
constexpr int64_t kTicksOfActivation = 24;

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
  const std::vector<std::string> parts = Split(line, "\t");
  FrameworkCall call;
  call.operation = call.text = parts.front();
  for (size_t i = 1; i < parts.size(); ++i) {
    const size_t equals = parts[i].find('=');
    if (equals == std::string::npos) continue;
    call.fields.push_back({parts[i].substr(0, equals), Unescape(parts[i].substr(equals + 1))});
    call.text += "  " + parts[i];
  }
  return call;
}

// Follows the plug-in's font activation by its calls, because its steps are seen from outside
// alone: step 1 tells the framework of the document, step 3 has the host scan the fonts, and step
// 10 opens the project again. A document told of twice on one tick is one activation.
void FollowActivation(Timeline& timeline, const Event& entry) {
  std::optional<int64_t>& began = frameworkLog.activationBegan;
  if (entry.actor == Actor::framework && entry.call.function == "HandleOpenExistingDocument") {
    if (began == entry.tick) return;
    began = entry.tick;
    // In case that step 1 of another activation was the last.
    timeline.setState(kActivation, "0");
    timeline.setState(kActivation, "1");
  } else if (began && entry.call.function == "AEGP_UpdateFontList") {
    timeline.setState(kActivation, "3");
  } else if (began && entry.call.function == "AEGP_OpenProjectFromPath") {
    timeline.setState(kActivation, "10");
  }
}

void FollowEnabled(Timeline& timeline, const Event& entry) {
  if (entry.actor != Actor::framework || entry.call.function != "PluginIsEnabled") return;
  const std::string* const enabled = FindLast(entry.call.arguments, "enabled");
  if (!enabled) return;
  frameworkLog.enabled = *enabled == "true";
  timeline.setState("enabled", *enabled);
}

// A plug-in that is disabled takes no step, and so doesn't end an activation.
void EndActivation(Timeline& timeline) {
  std::optional<int64_t>& began = frameworkLog.activationBegan;
  if (!began || timeline.tick < *began + kTicksOfActivation || !frameworkLog.enabled) return;
  began.reset();
  timeline.setState(kActivation, "0");
}

// What the plug-in passes: of an argument that goes both ways, the journal has this first.
void CheckBuffers(Host& host, const FrameworkCall& call) {
  constexpr int64_t kIdSize = 256;
  constexpr int64_t kListSize = 0x20000;
  const bool isList = FindLast(call.fields, "list") != nullptr;
  for (const auto& [name, value] : call.fields) {
    if (value == "(not terminated)") {
      host.report(Finding::badArgument,
                  fmt::format("{}: {} has no terminator", call.operation, name),
                  {call.operation, name, {}});
    }
    if (name != "size") continue;
    const int64_t most = isList ? kListSize : kIdSize;
    if (value == "0" || std::strtoll(value.c_str(), nullptr, 10) > most) {
      host.report(
          Finding::badArgument,
          fmt::format("{}: size is {}, of a buffer of {} bytes", call.operation, value, most),
          {call.operation, name, {}});
    }
    return;
  }
}

void TakeJournal(Host& host) {
  for (std::string& line : frameworkLog.journal.newLines()) {
    host.timeline.shortenPaths(line);
    FrameworkCall call = ParseJournalLine(line);
    call.tick = host.timeline.tick;
    const int64_t number = ++frameworkLog.callCount[call.operation];
    const bool isRunning = frameworkLog.activationBegan.has_value();
    const bool isFaulty = frameworkLog.answersLeft.take(call.operation, number);
    if (isFaulty) host.countFailure(call.operation);
    CheckBuffers(host, call);
    host.timeline.show(Actor::framework, call.text, {call.operation, call.fields});
    frameworkLog.rules.take(call.operation, call.fields, isFaulty, isRunning);
    frameworkLog.calls.push_back(std::move(call));
  }
}

void FollowJournal(Host& host) {
  const int journal = open("journal", O_RDONLY | O_CREAT | O_CLOEXEC, 0600);
  if (journal < 0) throw std::runtime_error("can't open journal");
  frameworkLog.journal.follow(journal);
  host.timeline.addSource([&host] {
    TakeJournal(host);
    EndActivation(host.timeline);
  });
  host.timeline.addObserver([&timeline = host.timeline](const Event& entry) {
    FollowActivation(timeline, entry);
    FollowEnabled(timeline, entry);
  });
  host.timeline.setState(kActivation, "0");
  frameworkLog.rules.begin(host);
}

// Meanwhile the framework answers by itself.
void Settle(Host& host) {
  const std::string answers = host.inFolder("framework-answers");
  const std::vector<std::string> kept = ReadLines(answers);
  const AnswersLeft left = std::exchange(frameworkLog.answersLeft, {});
  WriteLines(answers, {});
  frameworkLog.rules.settle();
  WriteLines(answers, kept);
  frameworkLog.answersLeft = left;
}

void CheckAnswersLeft(Host& host) {
  if (host.settings().tolerant) return;
  for (const auto& [operation, count] : frameworkLog.answersLeft.counts()) {
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
  entries.front().second.forEachField([&](const std::string& name, const YamlValue& field) {
    if (name != "result" && !operation.has(name)) {
      field.fail(fmt::format("{} has no argument '{}'", operation.name, name));
    }
    call.fields.emplace_back(name, field.text());
  });
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
           const std::string* const found = FindLast(call.fields, field.first);
           return found && SameValue(field.second, *found);
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
  value.forEachElement([&](const YamlValue& call) {
    if (call.isList()) {
      ReadExpectedCalls(call, calls, depth + 1);
    } else {
      calls.push_back(ReadExpectedCall(call));
    }
  });
}

std::string ReadAnswerField(const YamlValue& field) {
  if (field.key() == "choose" || field.key() == "text") return Join(field.texts(), ";");
  if (field.key() == "start" || field.key() == "fill") return field.boolean() ? "true" : "false";
  if (field.key() == "result") return fmt::format("{:#010x}", field.integer(0, 0xFFFFFFFF));
  return fmt::format("{}", field.integer(std::numeric_limits<int32_t>::min(),
                                         std::numeric_limits<int64_t>::max()));
}

struct Answer {
  std::string operation;
  std::string line;  // of the session folder's file
  int64_t call = 0;  // the number of the call that it is for, or 0 for the next one
  bool isFault = false;
};

std::vector<std::string_view> AnswerKeys(const Operation& operation) {
  std::vector<std::string_view> keys{"call", "result"};
  if (operation.name == "InvokeResolveDialog") keys.push_back("choose");
  if (operation.has("start")) keys.push_back("start");
  if (operation.has("count")) keys.push_back("count");
  if (operation.has("size")) keys.insert(keys.end(), {"size", "fill"});
  if (operation.has("size") && operation.has("list")) keys.push_back("text");
  return keys;
}

Answer ReadAnswer(const std::string& operation, const YamlValue& fields) {
  Answer answer{operation, operation};
  for (const auto& [key, field] : fields.fields(AnswerKeys(FindOperation(fields, operation)))) {
    answer.line += fmt::format("\t{}={}", key, ReadAnswerField(field));
    if (key == "call") answer.call = field.integer(1, std::numeric_limits<int32_t>::max());
    answer.isFault = answer.isFault || (key != "call" && key != "choose" && key != "start");
  }
  return answer;
}

Action ReadAnswers(const YamlValue& value) {
  std::vector<Answer> answers;
  value.forEachElement([&](const YamlValue& answer) {
    answer.forEachField([&](const std::string& operation, const YamlValue& fields) {
      answers.push_back(ReadAnswer(operation, fields));
    });
  });
  return [answers](Host& host) {
    host.timeline.drain();
    for (const Answer& answer : answers) {
      AppendLine(host.inFolder("framework-answers"), answer.line);
      frameworkLog.answersLeft.add(answer.operation, answer.call, answer.isFault);
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

constexpr std::array<std::string_view, 3> kPolicies{"automatic", "choice", "restricted"};

std::string ReadVault(const YamlValue& vault) {
  std::string lines;
  vault.forEachField([&](const std::string& font, const YamlValue& policy) {
    const std::string text = policy.text();
    if (std::find(kPolicies.begin(), kPolicies.end(), text) == kPolicies.end()) {
      policy.fail("has to be automatic, choice or restricted");
    }
    lines += fmt::format("{}\t{}\n", font, text);
  });
  return lines;
}

// The results that the plug-in tells apart, and one that it doesn't.
constexpr std::array kResults{"0",          "0x07000000", "0x0A000000",
                              "0x0C000000", "0x12000000", "0x15000000"};
// Nothing, no more than an end, the buffers' own sizes and one more, and the largest.
constexpr std::array kSizes{"0", "1", "256", "257", "131072", "131073", "9223372036854775807"};
constexpr std::array kCounts{"-2147483648", "-1", "0", "1", "2147483647"};

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
  const auto operation =
      std::find_if(kOperations.begin(), kOperations.end(),
                   [&](const Operation& each) { return each.name == call.function; });
  if (operation == kOperations.end()) return {};
  std::vector<std::string> steps;
  const auto add = [&](const char* before, const auto& values, const char* after = "") {
    for (const char* value : values) {
      steps.push_back(fmt::format("framework answers: [{}: {{call: {}, {}{}{}}}]", call.function,
                                  call.number, before, value, after));
    }
  };
  add("result: ", kResults);
  if (operation->has("list") && operation->has("size"))
    add("result: ", kResults, ", text: [Garamond]");
  if (operation->has("size")) {
    add("size: ", kSizes);
    add("fill: ", std::array{"true"});
  }
  if (operation->has("count")) add("count: ", kCounts);
  return steps;
}

bool FontManager::awaitsCall() const {
  return frameworkLog.answersLeft.awaitCall();
}

void FontManager::addRandomKeys(Random& random, YAML::Node& session) const {
  if (mFolder.empty()) return;
  for (const char* font : {"Garamond", "Futura", "Bodoni", "Didot", "小塚ゴシック"}) {
    if (random.oneIn(4)) continue;
    session["vault"][font] =
        random.oneIn(2) ? std::string(kPolicies.front()) : std::string(random.among(kPolicies));
  }
  if (random.oneIn(15)) {
    const Operation& operation = kOperations[random.below(kOperations.size())];
    if (!fs::is_directory(mFolder / fmt::format("without-{}", operation.name))) return;
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
  const std::vector<std::string> faults = faultsOf(call);
  return faults[random.below(faults.size())];
}

Action FontManager::readStep(std::string_view name, const YamlValue& value) const {
  needsFolder(value);
  return name == "framework answers" ? ReadAnswers(value) : ReadState(value);
}

Check FontManager::readExpectation(std::string_view /*name*/, const YamlValue& value) const {
  needsFolder(value);
  if (value.isText()) {
    if (value.text() != "any") value.fail("has to be a list of calls, or any");
    return [](Host& host) {
      host.timeline.drain();
      frameworkLog.calls.clear();
      return std::string();
    };
  }
  std::vector<ExpectedCall> expected;
  ReadExpectedCalls(value, expected);
  return [expected](Host& host) {
    host.timeline.drain();
    return CompareCalls(expected, std::exchange(frameworkLog.calls, {}));
  };
}

}  // namespace host
