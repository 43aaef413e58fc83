#include "JUnitFile.h"

#include <algorithm>
#include <sstream>
#include <string_view>
#include <vector>

#include "TextFile.h"

namespace host {
namespace {

// Returns the text with what XML can't hold replaced: control characters by escapes, and the rest
// by U+FFFD.
std::string XmlText(std::string_view text) {
  std::string valid = EscapeLines(text);
  for (const std::string_view noncharacter : {"\uFFFE", "\uFFFF"}) {
    ReplaceAll(valid, noncharacter, "\uFFFD");
  }
  return valid;
}

std::string NamesOf(const Played& played) {
  std::vector<std::string> names;
  for (const Event& found : played.findings) {
    if (std::ranges::find(names, found.name) == names.end()) names.push_back(found.name);
  }
  return names.empty() ? "not every step was played" : Join(names, ", ");
}

void Set(pugi::xml_node node, const char* name, std::string_view text) {
  node.append_attribute(name).set_value(XmlText(text).c_str());
}

}  // namespace

void JUnitFile::end(const SessionInfo& session, const Played& played) {
  pugi::xml_node test = mSuite.append_child("testcase");
  Set(test, "classname", session.file);
  Set(test, "name", session.name);
  mTranscript.end(session, played);
  if (!played.failed) return;
  pugi::xml_node failure = test.append_child("failure");
  Set(failure, "message", NamesOf(played));
  failure.text().set(XmlText(mTranscript.takeText()).c_str());
}

void JUnitFile::finish() {
  mSuite.append_attribute("name").set_value("aegp-host");
  mSuite.append_attribute("tests").set_value(mDocument.select_nodes("//testcase").size());
  mSuite.append_attribute("failures").set_value(mDocument.select_nodes("//failure").size());
  std::ostringstream xml;
  mDocument.save(xml, "  ");
  mFile.write(xml.str());
}

}  // namespace host
