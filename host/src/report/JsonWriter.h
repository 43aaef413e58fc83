#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "Event.h"
#include "RunListener.h"

namespace host {

/// The version of the format of the objects.
inline constexpr int kFormat = 2;

/// Makes JSON objects of all that it hears.
class JsonWriter : public RunListener {
 public:
  void begin(const SessionInfo& session) override;
  void take(const Event& event) override;
  void end(const SessionInfo& session, const Played& played) override;

 protected:
  /// Makes the object that comes before those of all sessions. `program` is the name and version of
  /// this one.
  static Json Head(const std::string& program);
  virtual void write(const Json& object) = 0;

 private:
  /// Writes the object with the name of the session.
  void writeOfSession(const Json& json);

  std::string mSession;
};

}  // namespace host
