#include "JUnitFile.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string_view>
#include <vector>

#include "TextFile.h"

namespace host {
namespace {

// Returns the text with what XML can't hold replaced: control characters by escapes, and the rest
// by U+FFFD.
std::string XmlText(std::string_view text) {
  std::string valid;
  const std::string escaped = EscapeLines(text);
  utf8::replace_invalid(escaped.begin(), escaped.end(), std::back_inserter(valid));
  for (const std::string_view noncharacter : {"\uFFFE", "\uFFFF"}) {
    ReplaceAll(valid, noncharacter, "\uFFFD");
  }
  return valid;
}

std::string NamesOf(const Played& played) {
  std::vector<std::string> names;
  for (const Event& found : played.findings) {
    const bool isNew = std::find(names.begin(), names.end(), found.name) == names.end();
    if (isNew) names.push_back(found.name);
  }
  return names.empty() ? "not every step was played" : Join(names, ", ");
}

void Set(pugi::xml_node node, const char* name, std::string_view text) {
  node.append_attribute(name).set_value(XmlText(text).c_str());
}

}  // namespace

void JUnitFile::begin(const SessionInfo& session) {
  mText = mTranscript.begin(session);
}

void JUnitFile::take(const Event& event) {
  mText += mTranscript.add(event);
}

void JUnitFile::end(const SessionInfo& session, const Played& played) {
  ++mCount;
  pugi::xml_node test = mSuite.append_child("testcase");
  Set(test, "classname", session.file);
  Set(test, "name", session.name);
  mText += mTranscript.end(played);
  if (!played.failed) return;
  ++mFailures;
  pugi::xml_node failure = test.append_child("failure");
  Set(failure, "message", NamesOf(played));
  failure.text().set(XmlText(mText).c_str());
}

void JUnitFile::finish() {
  mSuite.append_attribute("name").set_value("aegp-host");
  mSuite.append_attribute("tests").set_value(mCount);
  mSuite.append_attribute("failures").set_value(mFailures);
  std::ostringstream xml;
  mDocument.save(xml, "  ");
  mFile.write(xml.str());
  mFile.flush();
}

}  // namespace host
