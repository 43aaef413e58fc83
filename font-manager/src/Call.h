#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tamberlink {

/// One call of an export: its line in the journal, and what the session wants answered instead of
/// the framework's own results. The arguments are noted first, in order and as they came; then the
/// work is done; then the out-arguments are left, which is where the session's answer comes in;
/// `end` writes the line.
///
/// The numbers of an answer throw `std::invalid_argument` if they aren't numbers. The exports let
/// nothing out, so that a session with a bad answer ends at once and doesn't play another session
/// than it says.
class Call {
 public:
  /// Takes the session's next answer for the operation.
  explicit Call(const char* operation);

  /// Notes an argument.
  void note(std::string_view name, std::string_view value);
  void note(std::string_view name, uint64_t value);
  void noteFlag(std::string_view name, bool value);

  /// What the session answers in a field, or null if it leaves that to the framework.
  [[nodiscard]] std::optional<std::string> answer(const std::string& field) const;

  /// Leaves an out-argument: the session's answer goes before the value that is there, and what is
  /// left is noted.
  void leaveList(char* list, uint64_t capacity);
  void leaveSize(uint64_t& size);
  void leaveCount(int32_t& count);

  /// Writes the journal's line and returns the code to answer: the session's, or `result`.
  uint32_t end(uint32_t result);

  /// Writes the journal's line of an export that has no result.
  void end() const;

 private:
  std::map<std::string, std::string> mAnswer;
  std::string mLine;
  bool mAnswerFits = true;
};

}  // namespace tamberlink
