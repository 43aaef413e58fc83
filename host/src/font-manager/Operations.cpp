#include "Operations.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>

#include "TextFile.h"

namespace host {
namespace {

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

std::string ReadAnswerField(const YamlValue& field) {
  if (field.key() == "choose" || field.key() == "text") return Join(field.texts(), ";");
  if (field.key() == "start" || field.key() == "fill") return field.boolean() ? "true" : "false";
  if (field.key() == "result") return fmt::format("{:#010x}", field.integer(0, 0xFFFFFFFF));
  return fmt::format("{}", field.integer(std::numeric_limits<int32_t>::min(),
                                         std::numeric_limits<int64_t>::max()));
}

std::vector<std::string_view> AnswerKeys(const Operation& operation) {
  std::vector<std::string_view> keys{"call", "result"};
  if (operation.name == "InvokeResolveDialog") keys.push_back("choose");
  if (operation.has("start")) keys.push_back("start");
  if (operation.has("count")) keys.push_back("count");
  if (operation.has("size")) keys.insert(keys.end(), {"size", "fill"});
  if (operation.has("size") && operation.has("list")) keys.push_back("text");
  return keys;
}

Answer ReadAnswer(const YamlValue& value) {
  Answer answer{value.key(), value.key()};
  const auto read = [&](const YamlValue& field) {
    const std::string& key = field.key();
    answer.line += fmt::format("\t{}={}", key, ReadAnswerField(field));
    if (key == "call") answer.call = field.integer(1, std::numeric_limits<int32_t>::max());
    answer.isFault = answer.isFault || (key != "call" && key != "choose" && key != "start");
  };
  std::vector<KeyReader> readers;
  for (const std::string_view key : AnswerKeys(FindOperation(value, value.key()))) {
    readers.push_back({key, read});
  }
  value.readKeys(readers);
  return answer;
}

// The results that the plug-in tells apart, and one that it doesn't.
constexpr std::array kResults{"0",          "0x07000000", "0x0A000000",
                              "0x0C000000", "0x12000000", "0x15000000"};
// Nothing, no more than an end, the buffers' own sizes and one more, and the largest.
constexpr std::array kSizes{"0", "1", "256", "257", "131072", "131073", "9223372036854775807"};
constexpr std::array kCounts{"-2147483648", "-1", "0", "1", "2147483647"};

}  // namespace

const Operation& FindOperation(const YamlValue& value, const std::string& name) {
  const auto found = std::ranges::find(kOperations, name, &Operation::name);
  if (found == kOperations.end()) {
    value.fail(fmt::format("the framework has no operation '{}'", name));
  }
  return *found;
}

std::vector<Answer> ReadAnswers(const YamlValue& value) {
  std::vector<Answer> answers;
  value.forEachElement([&](const YamlValue& answer) {
    answer.forEachField([&](const YamlValue& fields) { answers.push_back(ReadAnswer(fields)); });
  });
  return answers;
}

std::vector<std::string> AnswersThatFail(const CountedCall& call) {
  const auto operation = std::ranges::find(kOperations, call.function, &Operation::name);
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

std::vector<std::string> AnswersThatFail() {
  std::vector<std::string> all;
  for (const Operation& operation : kOperations) {
    if (operation.arguments.empty()) continue;
    for (const int64_t call : {1, 2}) {
      const std::vector<std::string> steps = AnswersThatFail({std::string(operation.name), call});
      all.insert(all.end(), steps.begin(), steps.end());
    }
  }
  return all;
}

}  // namespace host
