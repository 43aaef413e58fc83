#pragma once

#include <string>

#include "JsonWriter.h"
#include "OutputFile.h"

namespace host {

/// Writes a file with one JSON object a line. Throws `std::runtime_error` if a write fails.
class JsonFile final : public JsonWriter {
 public:
  JsonFile(const std::string& path, const std::string& program);
  void end(const SessionInfo& session, const Played& played) override;
  void finish() override { mFile.flush(); }

 private:
  void write(const Json& object) override;

  OutputFile mFile;
};

}  // namespace host
