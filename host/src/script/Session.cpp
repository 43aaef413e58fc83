#include "Session.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <set>

#include "Expectations.h"
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
  ReadField(fields, "open project",
            [&](const YamlValue& title) { host.openProjectTitle = title.text(); });
  ReadField(fields, "missing fonts",
            [&](const YamlValue& title) { host.missingFontsTitle = title.text(); });
}

void ReadLanguage(const YamlValue& value, HostSettings& host) {
  const std::string language = value.text();
  if (!KnowsLanguage(language)) {
    value.fail(fmt::format("has to be one of en, fr, de, es, it, pt, ja, not '{}'", language));
  }
  host.language = language;
}

void ReadWindowClasses(const YamlValue& value, HostSettings& host) {
  value.forEachField([&](const std::string& name, const YamlValue& base) {
    if (!KnowsWindowClass(host, base.text())) {
      base.fail(fmt::format("there is no window class '{}'", base.text()));
    }
    host.windowClasses.emplace_back(name, base.text());
  });
}

void ReadPreferences(const YamlValue& value, HostSettings& host) {
  value.forEachField([&](const std::string& section, const YamlValue& entries) {
    entries.forEachField([&](const std::string& key, const YamlValue& text) {
      host.preferences[{section, key}] = text.text();
    });
  });
}

HostSettings ReadHost(const YamlValue& value) {
  HostSettings host;
  const Fields fields = value.fields(
      {"version", "language", "titles", "window classes", "applications", "preferences"});
  ReadField(fields, "version", [&](const YamlValue& version) { ReadVersion(version, host); });
  ReadField(fields, "language", [&](const YamlValue& language) { ReadLanguage(language, host); });
  ReadField(fields, "titles", [&](const YamlValue& titles) { ReadTitles(titles, host); });
  ReadField(fields, "window classes",
            [&](const YamlValue& classes) { ReadWindowClasses(classes, host); });
  ReadField(fields, "applications",
            [&](const YamlValue& applications) { host.applications = applications.texts(); });
  ReadField(fields, "preferences",
            [&](const YamlValue& preferences) { ReadPreferences(preferences, host); });
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
  ReadField(fields, "projects", [&](const YamlValue& projects) {
    projects.forEachField([&](const std::string& path, const YamlValue& fonts) {
      // A fault of the fonts isn't one of the steps that open the project.
      setup.projects.emplace_back(ReadFile(fonts, path, paths), std::vector<std::string>());
      setup.projects.back().second = fonts.texts();
    });
  });
  ReadField(fields, "active fonts",
            [&](const YamlValue& fonts) { setup.activeFonts = fonts.texts(); });
  ReadField(fields, "files", [&](const YamlValue& files) {
    files.forEachField([&](const std::string& path, const YamlValue& text) {
      setup.files.emplace_back(ReadFile(text, path, paths), text.text());
    });
  });
  return setup;
}

std::vector<std::pair<std::string, std::string>> ReadEnvironment(const YamlValue& value) {
  std::vector<std::pair<std::string, std::string>> variables;
  value.forEachField([&](const std::string& name, const YamlValue& text) {
    if (name.empty() || name.find('=') != std::string::npos) {
      text.fail(fmt::format("'{}' can't be the name of a variable", name));
    }
    variables.emplace_back(name, text.text());
  });
  return variables;
}

Fields ReadKeys(const YamlValue& root, const SessionPart& part) {
  std::vector<std::string_view> known{"about",        "variants",    "host",         "projects",
                                      "active fonts", "files",       "known issues", "tolerant",
                                      "settles",      "environment", "steps"};
  const std::vector<std::string_view> more = part.keys();
  known.insert(known.end(), more.begin(), more.end());
  Fields fields;
  root.forEachField([&](const std::string& key, const YamlValue& value) {
    const bool isKnown = std::find(known.begin(), known.end(), key) != known.end();
    if (!isKnown) FailForUnknown(value, "key", known, part);
    fields.emplace(key, value);
  });
  return fields;
}

Session ReadSession(const YamlValue& root, std::string name, const std::string& file,
                    const SessionPart& part) {
  const Fields fields = ReadKeys(root, part);
  Session session;
  session.name = std::move(name);
  session.file = file;
  ReadField(fields, "about", [&](const YamlValue& about) { session.about = about.text(); });
  ReadField(fields, "host", [&](const YamlValue& host) { session.host = ReadHost(host); });
  ReadField(fields, "known issues",
            [&](const YamlValue& issues) { session.knownIssues = ReadKnownIssues(issues, part); });
  ReadField(fields, "tolerant",
            [&](const YamlValue& tolerant) { session.host.tolerant = tolerant.boolean(); });
  ReadField(fields, "environment", [&](const YamlValue& environment) {
    session.environment = ReadEnvironment(environment);
  });
  ReadField(fields, "settles",
            [&](const YamlValue& settles) { session.settles = settles.boolean(); });
  session.setUp = ReadFolder(fields);
  CollectFaults([&] { part.readKeys(root, fields, session); });
  const YamlValue* steps = Find(fields, "steps");
  if (!steps) root.fail("the key 'steps' is missing");
  std::set<std::string> projects;
  for (const auto& project : session.setUp.projects) projects.insert(project.first);
  session.steps = ReadSteps(*steps, {part, session.host, std::move(projects)});
  session.stepCount = session.steps.size();
  return session;
}

const Variables kNoVariables;

std::vector<Session> ReadVariants(YamlFile& yaml, const std::string& file, const std::string& text,
                                  const SessionPart& part) {
  const std::string name = std::filesystem::path(file).stem().string();
  const YamlValue variants(yaml.root()["variants"], "variants", &yaml, &kNoVariables);
  if (variants.list().empty()) variants.fail("has to have a variant");
  std::vector<Session> sessions;
  std::set<std::string> names;
  variants.forEachElement([&](const YamlValue& variant) {
    Variables variables;
    std::string variantName;
    for (const auto& [key, value] : variant.fields()) {
      variables.emplace(key, value.node());
      if (key == "name") variantName = value.text();
    }
    if (variantName.empty()) variant.fail("a variant needs a name");
    if (!names.insert(variantName).second) variant.fail("two variants have one name");
    sessions.push_back(ReadSession(YamlValue(yaml.root(), "session", &yaml, &variables),
                                   fmt::format("{} ({})", name, variantName), file, part));
    sessions.back().text = [text, variantName] { return ResolveVariant(text, variantName); };
  });
  return sessions;
}

}  // namespace

std::vector<Session> ReadSessions(const std::string& file, const std::string& text,
                                  const SessionPart& part) {
  YamlFile yaml(file, text);
  std::vector<Session> sessions;
  yaml.readWith([&] {
    const YamlValue root(yaml.root(), "session", &yaml, &kNoVariables);
    if (!root.isMap()) root.fail("has to be a map");
    if (yaml.root()["variants"]) {
      sessions = ReadVariants(yaml, file, text, part);
      return;
    }
    const std::string name = std::filesystem::path(file).stem().string();
    sessions.push_back(ReadSession(root, name, file, part));
    sessions.back().text = [text] { return YAML::Load(text); };
  });
  return sessions;
}

std::vector<Session> LoadSessions(const std::filesystem::path& file, const SessionPart& part) {
  return ReadSessions(file.string(), ReadSessionFile(file), part);
}

}  // namespace host
