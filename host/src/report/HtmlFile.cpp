#include "HtmlFile.h"

#include "Page.h"
#include "TextFile.h"

namespace host {
namespace {

constexpr std::string_view kPlaceholder = "/*EVENTS*/";

// Within a script, "</script" and "<!--" would be the page's own.
std::string DumpForPage(const Json& object) {
  std::string text = Dump(object);
  ReplaceAll(text, "<", "\\u003c");
  return text;
}

}  // namespace

HtmlFile::HtmlFile(const std::string& path, const std::string& program) : mFile(path) {
  const std::string_view page = Page();
  const size_t place = page.find(kPlaceholder);
  mRest = page.substr(place + kPlaceholder.size());
  mFile.write(page.substr(0, place));
  mFile.write("[");
  mFile.write(DumpForPage(Head(program)));
}

void HtmlFile::write(const Json& object) {
  mFile.write(",\n");
  mFile.write(DumpForPage(object));
}

void HtmlFile::finish() {
  mFile.write("]");
  mFile.write(mRest);
  mFile.flush();
}

}  // namespace host
