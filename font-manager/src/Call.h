#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tamberlink {

/// One call of an export: its line in the journal, and the session's answer to it. An export notes
/// its arguments as they came, does its work, leaves its out-arguments, where the answer replaces
/// its own values, and ends the call.
///
/// Throws `std::invalid_argument` for a number in the answer that isn't one. It ends the process,
/// since a session with a bad answer can't be played as it says.
class Call {
 public:
  /// Takes the session's next answer for the operation.
  explicit Call(const char* operation);

  /// Notes an argument.
  void note(std::string_view name, std::string_view value);
  void note(std::string_view name, uint64_t value);
  void noteFlag(std::string_view name, bool value);

  /// Returns a field of the session's answer, or null if it leaves that to the framework.
  [[nodiscard]] std::optional<std::string> answer(const std::string& field) const;

  /// Replaces an out-argument by the session's answer, if any, and notes it.
  void leaveText(std::string_view name, char* text, uint64_t capacity);
  void leaveSize(uint64_t& size);
  void leaveCount(int32_t& count);

  /// Writes the line and returns the code to return: the session's, or `result`.
  uint32_t end(uint32_t result);

  /// Writes the line of an export without a result.
  void end() const;

 private:
  std::map<std::string, std::string> mAnswer;
  std::string mLine;
  bool mAnswerFits = true;
};

}  // namespace tamberlink
