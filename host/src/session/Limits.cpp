#include "Limits.h"

#include <fmt/format.h>

#include <optional>
#include <string>

namespace host {
namespace {

Acceptance ReadAcceptance(const YamlValue& value) {
  const auto fields = value.fields({"finding", "text", "after", "reason"});
  const YamlValue* name = Find(fields, "finding");
  const YamlValue* reason = Find(fields, "reason");
  if (!name || !reason) value.fail("needs the keys 'finding' and 'reason'");
  const std::optional<Finding> finding = FindingNamed(name->text());
  if (!finding) name->fail(fmt::format("there is no finding '{}'", name->text()));
  Acceptance acceptance{*finding, "", {}, reason->text()};
  if (const YamlValue* text = Find(fields, "text")) acceptance.text = text->text();
  if (const YamlValue* after = Find(fields, "after")) acceptance.after = after->texts();
  return acceptance;
}

}  // namespace

std::vector<Acceptance> ReadAcceptances(const YamlValue& list) {
  std::vector<Acceptance> acceptances;
  for (const YamlValue& each : list.list()) acceptances.push_back(ReadAcceptance(each));
  return acceptances;
}

Limits LoadLimits(const std::filesystem::path& file) {
  static const Variables kNoVariables;
  const std::string name = file.string();
  try {
    const YAML::Node node = YAML::LoadFile(name);
    const YamlValue root(node, "limits", &name, &kNoVariables);
    const auto fields = root.fields({"accepted"});
    const YamlValue* accepted = Find(fields, "accepted");
    if (!accepted) root.fail("the key 'accepted' is missing");
    return {node["accepted"], ReadAcceptances(*accepted)};
  } catch (const YAML::Exception& error) {
    throw SessionFileError(fmt::format("{}: {}", name, error.what()));
  }
}

void Accept(const Limits& limits, Session& session) {
  auto& accepted = session.host.accepted;
  accepted.insert(accepted.end(), limits.accepted.begin(), limits.accepted.end());
  session.text = [&limits, read = session.text] {
    YAML::Node text = read();
    for (const YAML::Node& each : limits.list) text["accepted"].push_back(each);
    return text;
  };
}

}  // namespace host
