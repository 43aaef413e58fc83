#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "Event.h"
#include "OutputFile.h"
#include "RunListener.h"

namespace host {

/// Writes all that it hears as JSON objects: one a line, or in one array in a page that shows the
/// sessions and needs nothing else. Throws `std::runtime_error` if a write fails.
class JsonFile final : public RunListener {
 public:
  enum class Form { lines, page };

  /// `program` is the name and version of this one.
  JsonFile(Form form, const std::string& path, const std::string& program);
  void begin(const SessionInfo& session) override;
  void take(const Event& event) override;
  void end(const SessionInfo& session, const Played& played) override;
  void finish() override;

 private:
  void write(const Json& object);
  /// Writes the object with the name of the session.
  void writeOfSession(const Json& json);

  Form mForm;
  OutputFile mFile;
  std::string mSeparator = "[";  ///< before the next element of the array
  std::string mSession;
};

}  // namespace host
