#include "Summary.h"

#include <fmt/format.h>

#include <string_view>
#include <vector>

#include "TextFile.h"

namespace host {
namespace {

void PrintLine(const char* what, const std::set<std::string>& names) {
  if (names.empty()) return;
  fmt::print("  {:<22} {}\n", what, Join({names.begin(), names.end()}, ", "));
}

// Returns what stands between the two in the text, or nothing.
std::string Between(const std::string& text, std::string_view before, std::string_view after) {
  if (!text.starts_with(before) || !text.ends_with(after)) return "";
  return text.substr(before.size(), text.size() - before.size() - after.size());
}

}  // namespace

void Summary::take(const Event& event) {
  if (!event.result) return;
  const Call& call = event.call;
  ++mFunctions[call.function];
  const bool isOk = *event.result == 0;
  const auto argument = [&](size_t number) { return call.arguments.at(number - 1).value; };
  if (call.function == "AcquireSuite") {
    (isOk ? mSuites : mMissingSuites).insert(argument(1) + " " + argument(2));
  } else if (call.function == "AEGP_InsertMenuCommand" && isOk) {
    mMenuItems.insert("\"" + argument(2) + "\"");
  } else if (isOk) {
    const std::string hook = Between(call.function, "AEGP_Register", "Hook");
    if (!hook.empty()) mHooks.insert(hook);
  }
  if (event.isUnsupplied) mNotSupplied.insert(call.function);
}

void Summary::print() const {
  int64_t calls = 0;
  for (const auto& [function, count] : mFunctions) calls += count;
  fmt::print("the plug-in:\n");
  if (mHooks.empty()) fmt::print("  warning: it registers no hook, so the host never calls it\n");
  PrintLine("registers hooks:", mHooks);
  PrintLine("inserts menu items:", mMenuItems);
  PrintLine("acquires suites:", mSuites);
  PrintLine("misses suites:", mMissingSuites);
  PrintLine("calls unsupplied:", mNotSupplied);
  fmt::print("  {:<22} {} functions, {} times\n\n", "calls", mFunctions.size(), calls);
}

}  // namespace host
