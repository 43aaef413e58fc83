#include "JsonFile.h"

namespace host {

JsonFile::JsonFile(const std::string& path, const std::string& program) : mFile(path) {
  mFile.write(Dump(Head(program)) + "\n");
}

void JsonFile::end(const SessionInfo& session, const Played& played) {
  JsonWriter::end(session, played);
  mFile.flush();
}

void JsonFile::write(const Json& object) {
  mFile.write(Dump(object) + "\n");
}

}  // namespace host
