#include "Session.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <set>

#include "Dialogs.h"
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
  if (!hasDot) value.fail("has to be a version such as 114.0");
  const auto minor = std::from_chars(major.ptr + 1, end, host.minorVersion);
  if (minor.ec != std::errc() || minor.ptr != end) value.fail("has to be a version such as 114.0");
}

HostSettings ReadHost(const YamlValue& value) {
  HostSettings host;
  const Fields fields = value.fields({"version", "language", "applications", "preferences"});
  if (const YamlValue* version = Find(fields, "version")) ReadVersion(*version, host);
  if (const YamlValue* language = Find(fields, "language")) {
    host.language = language->text();
    if (!IsLanguage(host.language)) language->fail("has to be one of en, fr, de, es, it, pt, ja");
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

// Refuses a path that leads out of the session folder.
std::string ReadPath(const YamlValue& value, const std::string& text) {
  const std::filesystem::path path(text);
  const bool leaves = std::find(path.begin(), path.end(), "..") != path.end();
  if (path.empty() || path.is_absolute() || leaves) value.fail("has to stay in the session folder");
  return text;
}

void ReadFramework(const YamlValue& value, SessionFolderSetup& folder) {
  folder.frameworkPlace = value.place();
  if (value.isText()) {
    if (value.text() != "none") value.fail("has to be none or a map");
    folder.hasFramework = false;
    return;
  }
  const Fields fields = value.fields({"folder", "missing export"});
  if (const YamlValue* place = Find(fields, "folder")) {
    folder.frameworkFolder = ReadPath(*place, place->text());
  }
  if (const YamlValue* missing = Find(fields, "missing export")) {
    folder.missingExport = missing->text();
  }
}

SessionFolderSetup ReadFolder(const YamlValue& root, const Fields& fields) {
  SessionFolderSetup folder;
  folder.frameworkPlace = root.place();
  if (const YamlValue* projects = Find(fields, "projects")) {
    for (const auto& [path, fonts] : projects->fields()) {
      folder.projects.emplace_back(ReadPath(fonts, path), fonts.texts());
    }
  }
  if (const YamlValue* vault = Find(fields, "vault")) {
    static const std::set<std::string> kPolicies{"automatic", "choice", "restricted"};
    for (const auto& [font, policy] : vault->fields()) {
      if (!kPolicies.contains(policy.text())) {
        policy.fail("has to be automatic, choice or restricted");
      }
      folder.vault.emplace_back(font, policy.text());
    }
  }
  if (const YamlValue* fonts = Find(fields, "active fonts")) folder.activeFonts = fonts->texts();
  if (const YamlValue* framework = Find(fields, "framework")) ReadFramework(*framework, folder);
  if (const YamlValue* files = Find(fields, "files")) {
    for (const auto& [path, text] : files->fields()) {
      folder.files.emplace_back(ReadPath(text, path), text.text());
    }
  }
  if (const YamlValue* processes = Find(fields, "processes")) {
    for (const YamlValue& process : processes->list()) {
      folder.processes.push_back(ReadPath(process, process.text()));
    }
  }
  return folder;
}

Session ReadSession(const YamlValue& root, std::string name) {
  const Fields fields = root.fields({"about", "variants", "host", "projects", "vault",
                                     "active fonts", "framework", "files", "processes", "steps"});
  Session session;
  session.name = std::move(name);
  if (const YamlValue* about = Find(fields, "about")) session.about = about->text();
  if (const YamlValue* host = Find(fields, "host")) session.host = ReadHost(*host);
  session.folder = ReadFolder(root, fields);
  const YamlValue* steps = Find(fields, "steps");
  if (!steps) root.fail("the key 'steps' is missing");
  std::set<std::string> projects;
  for (const auto& project : session.folder.projects) projects.insert(project.first);
  session.steps = ReadSteps(*steps, std::move(projects));
  return session;
}

YAML::Node LoadFile(const std::string& file) {
  try {
    return YAML::LoadFile(file);
  } catch (const YAML::BadFile&) {
    throw SessionFileError(fmt::format("{}: can't be read", file));
  } catch (const YAML::ParserException& error) {
    throw SessionFileError(fmt::format("{}:{}: {}", file, error.mark.line + 1, error.msg));
  }
}

}  // namespace

std::vector<Session> LoadSessions(const std::filesystem::path& path) {
  static const Variables kNoVariables;
  const std::string file = path.string();
  const std::string name = path.stem().string();
  const YAML::Node node = LoadFile(file);
  const YamlValue root(node, "session", &file, &kNoVariables);
  if (!root.isMap()) root.fail("has to be a map");
  if (!node["variants"]) return {ReadSession(root, name)};

  std::vector<Session> sessions;
  const YamlValue variants(node["variants"], "variants", &file, &kNoVariables);
  for (const YamlValue& variant : variants.list()) {
    Variables variables;
    std::string variantName;
    for (const auto& [key, value] : variant.fields()) {
      variables.emplace(key, value.node());
      if (key == "name") variantName = value.text();
    }
    if (variantName.empty()) variant.fail("a variant needs a name");
    sessions.push_back(ReadSession(YamlValue(node, "session", &file, &variables),
                                   fmt::format("{} ({})", name, variantName)));
  }
  return sessions;
}

}  // namespace host
