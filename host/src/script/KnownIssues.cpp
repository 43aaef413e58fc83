#include "KnownIssues.h"

#include <fmt/format.h>

#include <optional>
#include <string>

#include "Suites.h"

namespace host {
namespace {

KnownIssue ReadKnownIssue(const YamlValue& value, const SessionPart& part) {
  const auto fields = value.fields({"finding", "function", "detail", "after", "reason"});
  const YamlValue* name = Find(fields, "finding");
  const YamlValue* reason = Find(fields, "reason");
  if (!name || !reason) value.fail("needs the keys 'finding' and 'reason'");
  const std::optional<Finding> finding = FindingNamed(name->text());
  if (!finding || !KindOf(*finding).has(kAcceptable)) {
    name->fail(fmt::format("there is no finding '{}' that a session can accept", name->text()));
  }
  KnownIssue issue{*finding, "", "", {}, reason->text()};
  if (const YamlValue* function = Find(fields, "function")) issue.function = function->text();
  if (const YamlValue* detail = Find(fields, "detail")) issue.detail = detail->text();
  if (const YamlValue* after = Find(fields, "after")) {
    issue.after = after->texts();
    for (const std::string& call : issue.after) {
      const bool isKnown = FunctionsThatCanFail().contains(call) || HasSuite(call) ||
                           !part.faultsOf({call, 1}).empty();
      if (!isKnown) after->fail(fmt::format("there is no call '{}' that could fail", call));
    }
  }
  return issue;
}

}  // namespace

std::vector<KnownIssue> ReadKnownIssues(const YamlValue& list, const SessionPart& part) {
  std::vector<KnownIssue> issues;
  list.forEachElement([&](const YamlValue& each) { issues.push_back(ReadKnownIssue(each, part)); });
  return issues;
}

KnownIssues LoadKnownIssues(const std::filesystem::path& file, const SessionPart& part) {
  static const Variables kNoVariables;
  YamlFile yaml(file.string(), ReadSessionFile(file));
  KnownIssues issues;
  yaml.readWith([&] {
    const YamlValue root(yaml.root(), "known issues", &yaml, &kNoVariables);
    const auto fields = root.fields({"known issues"});
    const YamlValue* list = Find(fields, "known issues");
    if (!list) root.fail("the key 'known issues' is missing");
    issues.issues = ReadKnownIssues(*list, part);
    issues.list.reset(list->node());
  });
  return issues;
}

void AddKnownIssues(const KnownIssues& issues, Session& session) {
  auto& all = session.knownIssues;
  all.insert(all.end(), issues.issues.begin(), issues.issues.end());
  session.text = [&issues, read = session.text] {
    YAML::Node text = read();
    for (const YAML::Node& each : issues.list) text["known issues"].push_back(YAML::Clone(each));
    return text;
  };
}

}  // namespace host
