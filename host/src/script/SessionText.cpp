#include "SessionText.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "TextFile.h"

namespace host {
namespace {

YAML::Node Resolve(const YAML::Node& node, const Variables& variables);

YAML::Node ResolveText(const YAML::Node& node, const Variables& variables) {
  std::string text = node.Scalar();
  for (const auto& [name, value] : variables) {
    const std::string variable = "${" + name + "}";
    if (text == variable) return Resolve(value, {});
    if (value.IsScalar()) ReplaceAll(text, variable, value.Scalar());
  }
  if (text == node.Scalar()) return YAML::Clone(node);
  return YAML::Node(text);
}

YAML::Node Resolve(const YAML::Node& node, const Variables& variables) {
  if (node.IsScalar()) return ResolveText(node, variables);
  YAML::Node resolved(node.Type());
  resolved.SetStyle(node.Style());
  if (node.IsSequence()) {
    for (const YAML::Node& element : node) resolved.push_back(Resolve(element, variables));
  }
  if (node.IsMap()) {
    for (const auto& entry : node) {
      resolved[Resolve(entry.first, variables)] = Resolve(entry.second, variables);
    }
  }
  return resolved;
}

// In the order in which a person reads a session.
void Emit(YAML::Emitter& emitter, const YAML::Node& session) {
  static constexpr std::array<std::string_view, 13> kOrder{
      "about",        "environment", "tolerant",  "settles",   "known issues", "host", "projects",
      "active fonts", "vault",       "framework", "processes", "files",        "steps"};
  emitter << YAML::BeginMap;
  for (const std::string_view key : kOrder) {
    const YAML::Node value = session[std::string(key)];
    if (value) emitter << YAML::Key << std::string(key) << YAML::Value << value;
  }
  for (const auto& entry : session) {
    const std::string key = entry.first.Scalar();
    if (std::find(kOrder.begin(), kOrder.end(), key) != kOrder.end()) continue;
    emitter << YAML::Key << key << YAML::Value << entry.second;
  }
  emitter << YAML::EndMap;
}

}  // namespace

YAML::Node ResolveVariant(const std::string& file, const std::string& variant) {
  const YAML::Node session = YAML::Load(file);
  Variables variables;
  for (const YAML::Node& each : session["variants"]) {
    if (each["name"].Scalar() != variant) continue;
    for (const auto& entry : each) variables.emplace(entry.first.Scalar(), entry.second);
  }
  YAML::Node rest(YAML::NodeType::Map);
  for (const auto& entry : session) {
    if (entry.first.Scalar() != "variants") rest[entry.first] = entry.second;
  }
  return Resolve(rest, variables);
}

std::string WriteSession(const YAML::Node& session, const std::string& comment) {
  YAML::Emitter emitter;
  Emit(emitter, session);
  std::string text;
  for (const std::string& line : Split(comment, "\n"))
    text += line.empty() ? "#\n" : "# " + line + "\n";
  return text + emitter.c_str() + "\n";
}

bool IsStep(const YAML::Node& step, std::string_view name) {
  return (step.IsScalar() ? step : step.begin()->first).Scalar() == name;
}

YAML::Node WithFirstStep(const YAML::Node& session, const std::string& step) {
  YAML::Node copy = YAML::Clone(session);
  YAML::Node steps(YAML::NodeType::Sequence);
  steps.push_back(YAML::Load(step));
  bool starts = false;
  for (const YAML::Node& each : session["steps"]) {
    starts = starts || IsStep(each, "start");
  }
  // A session that starts the host by itself does so after its first steps.
  if (!starts) steps.push_back("start");
  for (const YAML::Node& each : session["steps"]) steps.push_back(each);
  copy["steps"] = steps;
  return copy;
}

}  // namespace host
