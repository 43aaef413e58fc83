#include "SuiteFunction.h"

#include <fmt/format.h>

#include <utility>
#include <variant>

#include "TextFile.h"

namespace host {

void SuiteCall::begin() {
  mOuter = std::exchange(TheHost().timeline.call, &mRunning);
  append(mRunning.function);
  append("(");
  TheHost().flight().inHostCall = true;
  for (size_t i = 0; i < mRunning.count; ++i) {
    const RunningCall::Value& value = mRunning.arguments[i];
    const auto* const text = std::get_if<const char*>(&value);
    if (i > 0) append(", ");
    if (text && *text) {
      append("\"");
      append(EscapeControls(*text) + "\"");
    } else {
      append(TextOf(value));
    }
  }
  append(")");
}

SuiteCall::~SuiteCall() {
  TheHost().timeline.call = mOuter;
  TheHost().flight().inHostCall = false;
}

// Ends the text each time, because a wrong pointer can crash the next.
void SuiteCall::append(std::string_view text) {
  auto& field = TheHost().flight().hostCall;
  const size_t room = field.size() - 1 - mWritten;
  mWritten += text.copy(field.data() + mWritten, std::min(room, text.size()));
  field[mWritten] = '\0';
}

void SuiteCall::answer(A_Err result) const {
  Host& host = TheHost();
  if (result != A_Err_NONE) host.tellAnswer(result);
  if (host.settings().showsCalls) host.timeline.addCall(mRunning, result);
}

A_Err CheckSuite(Host& host, const void* table) {
  if (table == BasicSuite() || host.ledger.find(Holding::suite, table)) return A_Err_NONE;
  host.misused(Finding::releasedSuite, "its suite isn't acquired");
  return PF_Err_BAD_CALLBACK_PARAM;
}

A_Err AnswerNotSupplied(const void* table, const char* function) {
  Host& host = TheHost();
  if (!host.isMainThread()) return host.reportFromOtherThread(table, function);
  const SuiteCall call(function);
  CheckSuite(host, table);
  host.report(Finding::notSupplied,
              fmt::format("{} was called, which this host doesn't supply", function),
              {function, {}, function});
  host.noteOnce(Actor::plugIn, fmt::format("calls {}, which this host doesn't supply", function));
  call.answer(PF_Err_BAD_CALLBACK_PARAM);
  return PF_Err_BAD_CALLBACK_PARAM;
}

}  // namespace host
