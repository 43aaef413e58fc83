#include "JsonFile.h"

#include <string_view>
#include <utility>

#include "Page.h"
#include "TextFile.h"

namespace host {
namespace {

// The version of the format of the objects.
constexpr int kFormat = 2;
// Stands once in the page in place of the array.
constexpr std::string_view kPlaceholder = "/*EVENTS*/";

}  // namespace

JsonFile::JsonFile(Form form, const std::string& path, const std::string& program)
    : mForm(form), mFile(path) {
  if (mForm == Form::page) mFile.write(kPage.substr(0, kPage.find(kPlaceholder)));
  write({{"kind", "format"}, {"format", kFormat}, {"program", program}});
}

void JsonFile::begin(const SessionInfo& session) {
  mSession = session.name;
  Json object{{"kind", "session"}, {"session", session.name}, {"file", session.file}};
  if (!session.about.empty()) object["about"] = session.about;
  object["steps"] = session.stepCount;
  write(object);
}

void JsonFile::take(const Event& event) {
  writeOfSession(ToJson(event));
}

void JsonFile::end(const SessionInfo& session, const Played& played) {
  for (const Event& found : played.findings) {
    Json json = ToJson(found);
    json["level"] = KindOf(found).level == Level::error ? "error" : "warning";
    writeOfSession(json);
  }
  write({{"kind", "result"},
         {"session", session.name},
         {"result", played.failed ? "failed" : "ok"},
         {"complete", played.complete}});
}

void JsonFile::finish() {
  if (mForm == Form::lines) return;
  mFile.write("]");
  mFile.write(kPage.substr(kPage.find(kPlaceholder) + kPlaceholder.size()));
}

void JsonFile::writeOfSession(const Json& json) {
  Json object{{"kind", json.at("kind")}, {"session", mSession}};
  object.update(json);
  write(object);
}

void JsonFile::write(const Json& object) {
  std::string text = Dump(object);
  if (mForm == Form::lines) return mFile.write(text + "\n");
  // Within a script, "</script" and "<!--" would be the page's own.
  ReplaceAll(text, "<", "\\u003c");
  mFile.write(std::exchange(mSeparator, ",\n") + text);
}

}  // namespace host
