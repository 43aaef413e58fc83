#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "PlayHost.h"

namespace {

using testing::HasSubstr;

/// A session whose last step expects something else of the key than the host finds.
struct Disappointment {
  std::string key;
  std::string session;
  std::string found;
};

/// Returns a session that plays the steps, then expects the value.
std::string Expecting(const std::string& steps, const std::string& value,
                      const std::string& more = "") {
  return more + "steps: [" + steps + ", expect: {" + value + "}]\n";
}

const std::string kProject = "projects: {a.aep: [Futura]}\n";
const std::string kOpens = "open by double click: a.aep";

std::string Misbehaving(const std::string& behaviour) {
  return "files: {behaviour: " + behaviour + "}\n";
}

const std::vector<Disappointment> kDisappointments{
    {"project", Expecting(kOpens, "project: none", kProject), "a.aep"},
    {"missing fonts", Expecting(kOpens, "missing fonts: []", kProject), "Futura"},
    {"dirty", Expecting("edit", "dirty: false"), "true"},
    {"dialogs shown", Expecting("dialog: One", "dialogs shown: []"), "One"},
    {"errors", Expecting("tick", "errors: []", Misbehaving("fail")), "idle hook 42"},
    {"reports", Expecting("tick", "reports: []", Misbehaving("report")), "something is up"},
    {"not supplied", Expecting("tick", "not supplied: [AEGP_SetWatch]"), "nothing"},
    {"findings", Expecting("tick", "findings: []", Misbehaving("pass null")), "null-argument"},
    {"framework", Expecting("tick", "framework: [1 PluginIsEnabled]"), ""},
    {"activated", Expecting("tick", "activated: [com.apple.dock]"), "nothing"},
    {"font updates", Expecting("tick", "font updates: 1"), "0"},
    {"stdout", Expecting("tick", "stdout: []", Misbehaving("tell the time")),
     "it is 1700000000, 1700000000, 1700000000, 1700000000"},
    {"stderr",
     Expecting("tick", "stderr: [to the error stream, again], stdout: []",
               Misbehaving("write files")),
     "to the error stream"},
    {"front", Expecting("front: com.apple.dock", "front: host"), "com.apple.dock"},
    {"menu enabled", Expecting("open menu", "menu enabled: []"), "Mine"},
    {"menu checked", Expecting("open menu", "menu checked: [Mine]"), "nothing"},
    {"command handled", Expecting("pick: Mine", "command handled: false"), "true"},
    {"preferences",
     Expecting("tick", "preferences: {S: {key: two, other: none}}",
               "host: {preferences: {S: {key: one}}}\n"),
     "S / key = one"},
    {"files", Expecting("tick", "files: {a: two}", "files: {a: one}\n"), "a: one"},
    {"tick until", "steps: [tick until: {files: {a: one}, at most: 3}]\n", "a: none"},
    {"growth",
     Expecting("start: , expect: {growth: none}, tick", "growth: none",
               Misbehaving("hold more; acquire; get the path; allocate")),
     ""},
};

TEST(Expectation, FailsIfItIsDisappointed) {
  for (const auto& [key, session, found] : kDisappointments) {
    const Played played = Play(session, kWithFontManager);
    EXPECT_EQ(played.code, 1) << key;
    EXPECT_THAT(played.output, HasSubstr("NOT as expected: " + key));
    if (found.empty()) continue;
    EXPECT_THAT(played.output, HasSubstr("    found:    " + found + "\n")) << key;
  }
}

TEST(Expectation, HasARowForEachKeyAbove) {
  std::string known;
  for (const Disappointment& row : kDisappointments) known += " " + row.key + ",";
  const std::string output = Play("steps: [expect: {no such key: 1}]", kWithFontManager).output;
  const std::string before = "unknown key; known are";
  ASSERT_THAT(output, HasSubstr(before));
  const size_t start = output.find(before) + before.size();
  std::istringstream keys(output.substr(start, output.find('\n', start) - start));
  for (std::string key; std::getline(keys, key, ',');) EXPECT_THAT(known, HasSubstr(key + ","));
}

}  // namespace
