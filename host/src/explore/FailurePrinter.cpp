#include "FailurePrinter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "Progress.h"
#include "SessionFiles.h"
#include "TextFile.h"

namespace host {
namespace {

// A file's name in place of a text.
std::string FileNameOf(std::string text) {
  std::replace_if(
      text.begin(), text.end(),
      [](unsigned char letter) { return std::isalnum(letter) == 0 && letter < 0x80; }, '-');
  return text + ".yaml";
}

}  // namespace

void FailurePrinter::print(const Failure& failure) {
  ShowProgress("");
  ++mCount;
  fmt::print("\n{}\n", failure.title);
  if (failure.findings.empty()) fmt::print("  not every step was played\n");
  for (const Event& found : failure.findings) {
    fmt::print("  {}: {}\n", found.name, EscapeLines(found.text));
  }
  const std::string text = WriteSession(failure.session, failure.title);
  fmt::print("\nThis session repeats it:\n\n{}", text);
  if (!mSave.empty()) write(failure.title, text);
  std::fflush(stdout);
}

void FailurePrinter::write(const std::string& title, const std::string& text) {
  std::string name = FileNameOf(title);
  // Titles that differ only in replaced characters give one name.
  for (int i = 2; !mNames.insert(name).second; ++i) {
    name = FileNameOf(fmt::format("{} {}", title, i));
  }
  const std::filesystem::path file = mSave / name;
  WriteText(file, text);
  fmt::print("\nwritten: {}\n", file.string());
}

}  // namespace host
