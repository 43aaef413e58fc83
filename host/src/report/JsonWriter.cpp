#include "JsonWriter.h"

namespace host {

Json JsonWriter::Head(const std::string& program) {
  return {{"kind", "format"}, {"format", kFormat}, {"program", program}};
}

void JsonWriter::begin(const SessionInfo& session) {
  mSession = session.name;
  Json object{{"kind", "session"}, {"session", session.name}, {"file", session.file}};
  if (!session.about.empty()) object["about"] = session.about;
  object["steps"] = session.stepCount;
  write(object);
}

void JsonWriter::take(const Event& event) {
  writeOfSession(ToJson(event));
}

void JsonWriter::end(const SessionInfo& session, const Played& played) {
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

void JsonWriter::writeOfSession(const Json& json) {
  Json object{{"kind", json.at("kind")}, {"session", mSession}};
  object.update(json);
  write(object);
}

}  // namespace host
