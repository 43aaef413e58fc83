#pragma once

#include <pugixml.hpp>
#include <string>

#include "OutputFile.h"
#include "RunListener.h"
#include "Transcript.h"

namespace host {

/// Writes a JUnit file: a test suite with a test case for each session. Throws
/// `std::runtime_error` if a write fails.
class JUnitFile final : public RunListener {
 public:
  explicit JUnitFile(const std::string& path) : mFile(path) {}
  void begin(const SessionInfo& session) override { mTranscript.begin(session); }
  void take(const Event& event) override { mTranscript.take(event); }
  void end(const SessionInfo& session, const Played& played) override;
  /// Writes the file, whose head counts what follows.
  void finish() override;

 private:
  OutputFile mFile;
  pugi::xml_document mDocument;
  pugi::xml_node mSuite = mDocument.append_child("testsuite");
  Transcript mTranscript;
};

}  // namespace host
