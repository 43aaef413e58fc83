#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "RunListener.h"

namespace host {

/// Shows the progress on a terminal, and removes it for an empty text. Writes to standard error, so
/// that redirected output stays the same.
void ShowProgress(const std::string& text);

/// Returns the finding's name and its text, which may have several lines.
std::string FindingText(const Event& found);

/// Makes the text of sessions, of one after the other: a head, the timeline, and what came of it.
/// The timeline has a line for each entry, and one for expectations of a step that are met
/// together.
class Transcript final : public RunListener {
 public:
  explicit Transcript(bool hasColour = false) : mHasColour(hasColour) {}
  void begin(const SessionInfo& session) override;
  void take(const Event& event) override;
  void end(const SessionInfo& session, const Played& played) override;
  /// Returns the lines of the session that are certain by now, and forgets them.
  std::string takeText() { return std::exchange(mText, {}); }

 private:
  void addLine(const Event& event);
  void addMet();

  bool mHasColour;
  std::string mText;
  int64_t mLastTick = -1;  ///< that a line shows
  Event mMet;              ///< expectations that are met, in one event; no text if there is none
};

}  // namespace host
