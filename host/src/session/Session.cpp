#include "Session.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <set>

#include "Dialogs.h"
#include "KnownIssues.h"
#include "SessionPart.h"
#include "SessionText.h"
#include "Steps.h"
#include "YamlValue.h"

namespace host {
namespace {

using Fields = std::map<std::string, YamlValue>;

// Reads a version such as "114.0" as text: as a number, 113.10 would be 113.1.
void ReadVersion(const YamlValue& value, HostSettings& host) {
  const std::string text = value.text();
  const char* const end = text.data() + text.size();
  const auto major = std::from_chars(text.data(), end, host.majorVersion);
  const bool hasDot = major.ec == std::errc() && major.ptr != end && *major.ptr == '.';
  if (!hasDot) value.fail(fmt::format("has to be a version such as 114.0, not '{}'", text));
  const auto minor = std::from_chars(major.ptr + 1, end, host.minorVersion);
  const bool isWhole = minor.ec == std::errc() && minor.ptr == end;
  if (!isWhole || host.majorVersion < 0 || host.minorVersion < 0) {
    value.fail(fmt::format("has to be a version such as 114.0, not '{}'", text));
  }
}

void ReadTitles(const YamlValue& value, HostSettings& host) {
  const Fields fields = value.fields({"open project", "missing fonts"});
  if (const YamlValue* title = Find(fields, "open project")) host.openProjectTitle = title->text();
  if (const YamlValue* title = Find(fields, "missing fonts")) {
    host.missingFontsTitle = title->text();
  }
}

HostSettings ReadHost(const YamlValue& value) {
  HostSettings host;
  const Fields fields = value.fields(
      {"version", "language", "titles", "window classes", "applications", "preferences"});
  if (const YamlValue* version = Find(fields, "version")) ReadVersion(*version, host);
  if (const YamlValue* language = Find(fields, "language")) {
    host.language = language->text();
    if (!IsLanguage(host.language))
      language->fail(
          fmt::format("has to be one of en, fr, de, es, it, pt, ja, not '{}'", host.language));
  }
  if (const YamlValue* titles = Find(fields, "titles")) ReadTitles(*titles, host);
  if (const YamlValue* classes = Find(fields, "window classes")) {
    for (const auto& [name, base] : classes->fields()) {
      if (!KnowsWindowClass(host, base.text())) {
        base.fail(fmt::format("there is no window class '{}'", base.text()));
      }
      host.windowClasses.emplace_back(name, base.text());
    }
  }
  if (const YamlValue* applications = Find(fields, "applications")) {
    host.applications = applications->texts();
  }
  if (const YamlValue* preferences = Find(fields, "preferences")) {
    for (const auto& [section, entries] : preferences->fields()) {
      for (const auto& [key, text] : entries.fields()) host.preferences[section][key] = text.text();
    }
  }
  return host;
}

// Returns the path of a file that the session has. It can't be another file, nor lie in one.
std::string ReadFile(const YamlValue& value, const std::string& text,
                     std::set<std::filesystem::path>& files) {
  const std::filesystem::path path =
      std::filesystem::path(value.checkedPath(text)).lexically_normal();
  for (const std::filesystem::path& other : files) {
    const auto [inPath, inOther] =
        std::mismatch(path.begin(), path.end(), other.begin(), other.end());
    if (inPath == path.end() || inOther == other.end()) {
      value.fail(fmt::format("the session has the file '{}' already", other.string()));
    }
  }
  files.insert(path);
  return text;
}

FolderSetup ReadFolder(const Fields& fields) {
  FolderSetup setup;
  std::set<std::filesystem::path> paths;
  if (const YamlValue* projects = Find(fields, "projects")) {
    for (const auto& [path, fonts] : projects->fields()) {
      setup.projects.emplace_back(ReadFile(fonts, path, paths), fonts.texts());
    }
  }
  if (const YamlValue* fonts = Find(fields, "active fonts")) setup.activeFonts = fonts->texts();
  if (const YamlValue* files = Find(fields, "files")) {
    for (const auto& [path, text] : files->fields()) {
      setup.files.emplace_back(ReadFile(text, path, paths), text.text());
    }
  }
  return setup;
}

std::vector<std::pair<std::string, std::string>> ReadEnvironment(const YamlValue& value) {
  std::vector<std::pair<std::string, std::string>> variables;
  for (const auto& [name, text] : value.fields()) {
    if (name.empty() || name.find('=') != std::string::npos) {
      text.fail(fmt::format("'{}' can't be the name of a variable", name));
    }
    variables.emplace_back(name, text.text());
  }
  return variables;
}

Session ReadSession(const YamlValue& root, std::string name, const std::string& file,
                    const SessionPart& part) {
  std::vector<std::string_view> keys{"about",        "variants",    "host",     "projects",
                                     "active fonts", "files",       "accepted", "tolerant",
                                     "settles",      "environment", "steps"};
  const std::vector<std::string_view> more = part.keys();
  keys.insert(keys.end(), more.begin(), more.end());
  const Fields fields = root.fields(keys);
  Session session;
  session.name = std::move(name);
  session.file = file;
  if (const YamlValue* about = Find(fields, "about")) session.about = about->text();
  if (const YamlValue* host = Find(fields, "host")) session.host = ReadHost(*host);
  if (const YamlValue* accepted = Find(fields, "accepted")) {
    session.host.accepted = ReadAcceptances(*accepted, part);
  }
  if (const YamlValue* tolerant = Find(fields, "tolerant")) {
    session.host.tolerant = tolerant->boolean();
  }
  if (const YamlValue* environment = Find(fields, "environment")) {
    session.environment = ReadEnvironment(*environment);
  }
  if (const YamlValue* settles = Find(fields, "settles")) session.settles = settles->boolean();
  session.setUp = ReadFolder(fields);
  part.readKeys(root, fields, session);
  const YamlValue* steps = Find(fields, "steps");
  if (!steps) root.fail("the key 'steps' is missing");
  std::set<std::string> projects;
  for (const auto& project : session.setUp.projects) projects.insert(project.first);
  session.steps = ReadSteps(*steps, {part, session.host, std::move(projects)});
  session.stepCount = session.steps.size();
  return session;
}

}  // namespace

std::vector<Session> ReadSessions(const std::string& file, const std::string& yaml,
                                  const SessionPart& part) {
  static const Variables kNoVariables;
  const std::string name = std::filesystem::path(file).stem().string();
  const YAML::Node node = ParseYaml(file, yaml);
  const YamlValue root(node, "session", &file, &kNoVariables);
  if (!root.isMap()) root.fail("has to be a map");
  if (!node["variants"]) {
    std::vector<Session> sessions{ReadSession(root, name, file, part)};
    sessions.back().text = [yaml] { return YAML::Load(yaml); };
    return sessions;
  }

  std::vector<Session> sessions;
  const YamlValue variants(node["variants"], "variants", &file, &kNoVariables);
  std::set<std::string> names;
  if (variants.list().empty()) variants.fail("has to have a variant");
  for (const YamlValue& variant : variants.list()) {
    Variables variables;
    std::string variantName;
    for (const auto& [key, value] : variant.fields()) {
      variables.emplace(key, value.node());
      if (key == "name") variantName = value.text();
    }
    if (variantName.empty()) variant.fail("a variant needs a name");
    if (!names.insert(variantName).second) variant.fail("two variants have one name");
    sessions.push_back(ReadSession(YamlValue(node, "session", &file, &variables),
                                   fmt::format("{} ({})", name, variantName), file, part));
    sessions.back().text = [yaml, variantName] { return ResolveVariant(yaml, variantName); };
  }
  return sessions;
}

std::vector<Session> LoadSessions(const std::filesystem::path& file, const SessionPart& part) {
  return ReadSessions(file.string(), ReadSessionFile(file), part);
}

}  // namespace host
