#include "KnownIssues.h"

#include <fmt/format.h>

#include <optional>
#include <string>

#include "Suites.h"

namespace host {
namespace {

Acceptance ReadAcceptance(const YamlValue& value, const SessionPart& part) {
  const auto fields = value.fields({"finding", "function", "detail", "after", "reason"});
  const YamlValue* name = Find(fields, "finding");
  const YamlValue* reason = Find(fields, "reason");
  if (!name || !reason) value.fail("needs the keys 'finding' and 'reason'");
  const std::optional<Finding> finding = FindingNamed(name->text());
  if (!finding || !KindOf(*finding).has(kAcceptable)) {
    name->fail(fmt::format("there is no finding '{}' that a session can accept", name->text()));
  }
  Acceptance acceptance{*finding, "", "", {}, reason->text()};
  if (const YamlValue* function = Find(fields, "function")) acceptance.function = function->text();
  if (const YamlValue* detail = Find(fields, "detail")) acceptance.detail = detail->text();
  if (const YamlValue* after = Find(fields, "after")) {
    acceptance.after = after->texts();
    for (const std::string& call : acceptance.after) {
      const bool isKnown = FunctionsThatCanFail().contains(call) || HasSuite(call) ||
                           !part.faultsOf({call, 1}).empty();
      if (!isKnown) after->fail(fmt::format("there is no call '{}' that could fail", call));
    }
  }
  return acceptance;
}

}  // namespace

std::vector<Acceptance> ReadAcceptances(const YamlValue& list, const SessionPart& part) {
  std::vector<Acceptance> acceptances;
  list.forEachElement(
      [&](const YamlValue& each) { acceptances.push_back(ReadAcceptance(each, part)); });
  return acceptances;
}

KnownIssues LoadKnownIssues(const std::filesystem::path& file, const SessionPart& part) {
  static const Variables kNoVariables;
  YamlFile yaml(file.string(), ReadSessionFile(file));
  KnownIssues issues;
  yaml.readWith([&] {
    const YamlValue root(yaml.root(), "known issues", &yaml, &kNoVariables);
    const auto fields = root.fields({"accepted"});
    const YamlValue* accepted = Find(fields, "accepted");
    if (!accepted) root.fail("the key 'accepted' is missing");
    issues.accepted = ReadAcceptances(*accepted, part);
    issues.list.reset(accepted->node());
  });
  return issues;
}

void Accept(const KnownIssues& issues, Session& session) {
  auto& accepted = session.accepted;
  accepted.insert(accepted.end(), issues.accepted.begin(), issues.accepted.end());
  session.text = [&issues, read = session.text] {
    YAML::Node text = read();
    for (const YAML::Node& each : issues.list) text["accepted"].push_back(YAML::Clone(each));
    return text;
  };
}

}  // namespace host
