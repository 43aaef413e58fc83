#pragma once

#include <string>
#include <vector>

#include "Session.h"
#include "SessionPart.h"
#include "YamlValue.h"

namespace host {

/// What the keys and the steps read so far mean for the steps that follow.
struct StepDraft {
  const SessionPart& part;  ///< reads the steps that aren't the host's
  const HostSettings& host;
  bool started = false;
  bool quit = false;
};

/// Reads the steps of a session. Adds the steps "start" and "quit" at the two ends if the session
/// lacks them.
std::vector<Step> ReadSteps(const YamlValue& steps, StepDraft draft);

/// Reads the name of a window class that the host has.
std::string ReadWindowClass(const YamlValue& name, const HostSettings& host);

/// Plays a step. One that can't be played ends the session, or is skipped by a tolerant one.
void PlayStep(const Step& step, Host& host);

/// Reads a step from YAML of our own making, one that can come before the host starts. Throws
/// `SessionFileError`.
Step ReadStepOf(const std::string& yaml, const SessionPart& part);

}  // namespace host
