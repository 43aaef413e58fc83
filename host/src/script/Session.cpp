#include "Session.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <regex>
#include <set>

#include "Expectations.h"
#include "SessionPart.h"
#include "Steps.h"
#include "YamlValue.h"

namespace host {
namespace {

// Reads a version such as "114.0" as text: as a number, 113.10 would be 113.1.
void ReadVersion(const YamlValue& value, HostSettings& host) {
  const std::string text = value.text();
  std::smatch parts;
  if (!std::regex_match(text, parts, std::regex("(\\d{1,9})\\.(\\d{1,9})"))) {
    value.fail(fmt::format("has to be a version such as 114.0, not '{}'", text));
  }
  host.majorVersion = std::stoi(parts[1]);
  host.minorVersion = std::stoi(parts[2]);
}

void ReadLanguage(const YamlValue& value, HostSettings& host) {
  host.language = value.text();
  if (!KnowsLanguage(host.language)) {
    value.fail(fmt::format("has to be one of en, fr, de, es, it, pt, ja, not '{}'", host.language));
  }
}

void ReadWindowClasses(const YamlValue& value, HostSettings& host) {
  value.forEachField([&](const YamlValue& base) {
    host.windowClasses.emplace_back(base.key(), ReadWindowClass(base, host));
  });
}

void ReadPreferences(const YamlValue& value, HostSettings& host) {
  value.forEachField([&](const YamlValue& section) {
    section.forEachField([&](const YamlValue& text) {
      host.preferences[{section.key(), text.key()}] = text.text();
    });
  });
}

void ReadHost(const YamlValue& value, HostSettings& host) {
  const auto readTitles = [&](const YamlValue& titles) {
    titles.readKeys({{"open project", Into(host.openProjectTitle)},
                     {"missing fonts", Into(host.missingFontsTitle)}});
  };
  value.readKeys({{"version", [&](const YamlValue& text) { ReadVersion(text, host); }},
                  {"language", [&](const YamlValue& name) { ReadLanguage(name, host); }},
                  {"titles", readTitles},
                  {"window classes", [&](const YamlValue& map) { ReadWindowClasses(map, host); }},
                  {"applications", Into(host.applications)},
                  {"preferences", [&](const YamlValue& map) { ReadPreferences(map, host); }}});
}

// Returns the path of a file that the session has. It can't be another file, nor lie in one.
std::string ReadPath(const YamlValue& value, std::set<std::string>& paths) {
  const std::string path = value.checkedPath(value.key());
  const std::string normal = std::filesystem::path(path).lexically_normal().string();
  for (const std::string& other : paths) {
    if ((normal + "/").starts_with(other + "/") || (other + "/").starts_with(normal + "/")) {
      value.fail(fmt::format("the session has the file '{}' already", other));
    }
  }
  paths.insert(normal);
  return path;
}

void ReadEnvironment(const YamlValue& value, Session& session) {
  value.forEachField([&](const YamlValue& text) {
    const std::string& name = text.key();
    if (name.empty() || name.find('=') != std::string::npos) {
      text.fail(fmt::format("'{}' can't be the name of a variable", name));
    }
    session.environment.emplace_back(name, text.text());
  });
}

KnownIssue ReadKnownIssue(const YamlValue& value) {
  KnownIssue issue;
  const auto readFinding = [&](const YamlValue& name) {
    const std::optional<Finding> finding = FindingNamed(name.text());
    if (!finding || !KindOf(*finding).has(kCanBeKnown)) {
      name.fail(fmt::format("there is no finding '{}' that can be a known issue", name.text()));
    }
    issue.finding = *finding;
  };
  value.readKeys({{"finding", readFinding, true},
                  {"function", Into(issue.function)},
                  {"detail", Into(issue.detail)},
                  {"after", Into(issue.after)},
                  {"reason", Into(issue.reason), true}});
  return issue;
}

Session ReadSession(YamlFile& yaml, std::string name, const std::string& file,
                    const SessionPart& part) {
  const YamlValue root(yaml.root(), "session", yaml);
  Session session;
  session.name = std::move(name);
  session.file = file;
  std::set<std::string> paths;
  const auto readProject = [&](const YamlValue& fonts) {
    session.setUp.projects.emplace_back(ReadPath(fonts, paths), fonts.texts());
  };
  const auto readFile = [&](const YamlValue& text) {
    session.setUp.files.emplace_back(ReadPath(text, paths), text.text());
  };
  const auto readSteps = [&](const YamlValue& steps) {
    session.steps = ReadSteps(steps, {part, session.host});
  };
  const auto ignore = [](const YamlValue& /*value*/) {};
  std::vector<KeyReader> readers{
      {"about", Into(session.about)},
      {"variants", ignore},
      {"host", [&](const YamlValue& host) { ReadHost(host, session.host); }},
      {"projects", [&](const YamlValue& map) { map.forEachField(readProject); }},
      {"active fonts", Into(session.setUp.activeFonts)},
      {"files", [&](const YamlValue& map) { map.forEachField(readFile); }},
      {"known issues", [&](const YamlValue& list) { session.knownIssues = ReadKnownIssues(list); }},
      {"tolerant", Into(session.host.tolerant)},
      {"settles", Into(session.settles)},
      {"environment", [&](const YamlValue& map) { ReadEnvironment(map, session); }},
      {"steps", readSteps, true}};
  for (KeyReader& reader : part.addTo(session)) readers.push_back(std::move(reader));
  root.readKeys(readers, [&](const YamlValue& value) { RefuseExpectation(value, part); });
  // Resolving goes on without end if a variable holds itself, which is a fault.
  yaml.throwFaults();
  session.stepCount = session.steps.size();
  YAML::Node text;
  for (const YamlValue& value : root.fields()) {
    if (value.key() != "variants") text[value.key()] = value.resolved();
  }
  session.text = YAML::Dump(text);
  return session;
}

}  // namespace

std::vector<KnownIssue> ReadKnownIssues(const YamlValue& list) {
  std::vector<KnownIssue> issues;
  list.forEachElement([&](const YamlValue& each) { issues.push_back(ReadKnownIssue(each)); });
  return issues;
}

std::vector<Session> ReadSessions(const std::string& file, const std::string& text,
                                  const SessionPart& part) {
  YamlFile yaml(file, text);
  const std::string name = std::filesystem::path(file).stem().string();
  std::vector<Session> sessions;
  const auto read = [&](const std::string& sessionName) {
    sessions.push_back(ReadSession(yaml, sessionName, file, part));
  };
  std::set<std::string> names;
  const auto readVariant = [&](const YamlValue& variant) {
    yaml.variables.clear();
    const std::optional<YamlValue> variantName = variant.find("name");
    if (!variantName || variantName->text().empty()) variant.fail("a variant needs a name");
    if (!names.insert(variantName->text()).second) variant.fail("two variants have one name");
    for (const YamlValue& value : variant.fields()) {
      yaml.variables.emplace(value.key(), value.node());
    }
    read(fmt::format("{} ({})", name, variantName->text()));
  };
  if (const auto variants = YamlValue(yaml.root(), "session", yaml).find("variants")) {
    if (variants->list().empty()) variants->fail("has to have a variant");
    variants->forEachElement(readVariant);
  } else {
    read(name);
  }
  yaml.throwFaults();
  return sessions;
}

}  // namespace host
