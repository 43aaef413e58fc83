#include "SessionText.h"

#include "TextFile.h"

namespace host {
std::string WriteSession(const YAML::Node& session, const std::string& comment) {
  YAML::Emitter emitter;
  emitter << YAML::BeginMap;
  for (const bool isSteps : {false, true}) {
    for (const auto& entry : session) {
      if ((entry.first.Scalar() == "steps") != isSteps) continue;
      emitter << YAML::Key << entry.first << YAML::Value << entry.second;
    }
  }
  emitter << YAML::EndMap;
  std::string text;
  for (const std::string& line : Split(comment, "\n"))
    text += line.empty() ? "#\n" : "# " + line + "\n";
  return text + emitter.c_str() + "\n";
}

std::string StepName(const YAML::Node& step) {
  return (step.IsScalar() ? step : step.begin()->first).Scalar();
}

YAML::Node WithFirstStep(const YAML::Node& session, const std::string& step) {
  YAML::Node copy = YAML::Clone(session);
  YAML::Node steps(YAML::NodeType::Sequence);
  steps.push_back(YAML::Load(step));
  bool starts = false;
  for (const YAML::Node& each : session["steps"]) starts = starts || StepName(each) == "start";
  // A session that starts the host by itself does so after its first steps.
  if (!starts) steps.push_back("start");
  for (const YAML::Node& each : session["steps"]) steps.push_back(each);
  copy["steps"] = steps;
  return copy;
}

}  // namespace host
