#include "TraceFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DebugUtils.h"
#include "GLogger.h"
#include "TemporaryFolder.h"

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;
using testing::StartsWith;

std::vector<std::string> LinesOf(const std::filesystem::path& file) {
  std::vector<std::string> lines;
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

class TraceFileTest : public testing::Test {
 protected:
  ~TraceFileTest() override {
    SetTraceSink({});
    GLogger::GetSharedInstance()->RemoveAllAppenders();
    unsetenv("TYPELARK_TRACE");
  }

  const TemporaryFolder folder;
};

TEST_F(TraceFileTest, GetsEachTraceAndLogLineAtOnceBehindWhatItHolds) {
  const auto file = folder.Write("trace", "an earlier run\n");
  setenv("TYPELARK_TRACE", file.c_str(), 1);
  StartTraceFile();
  OutputIndentedAndFormattedString(+1, "begin %d", 1);
  GLogger::GetSharedInstance()->LogWarning("FileSystem", "warned");
  OutputIndentedAndFormattedString(0, "inside");
  OutputIndentedAndFormattedString(0, "inside");
  OutputIndentedAndFormattedString(-1, "end");
  OutputIndentedAndFormattedString(0, "inside");
  EXPECT_THAT(LinesOf(file),
              ElementsAre("an earlier run", StartsWith("Trace of process "), "begin 1",
                          MatchesRegex("\\[.*Z\\]\t\\[FileSystem\\]\t\\[Warning\\]\twarned"),
                          "  inside", "end", "inside"));
}

TEST_F(TraceFileTest, OneLineTellsWhyThereIsNone) {
  std::filesystem::current_path(folder.path());
  for (const std::string& path : {std::string("trace"), std::string(), folder.path().string(),
                                  (folder.path() / "none/trace").string()}) {
    setenv("TYPELARK_TRACE", path.c_str(), 1);
    testing::internal::CaptureStderr();
    StartTraceFile();
    EXPECT_FALSE(TraceIsOn());
    GLogger::GetSharedInstance()->LogWarning("FileSystem", "warned");
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                MatchesRegex("Typelark: TYPELARK_TRACE [^\n]*'" + path + "'[^\n]*\n"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  }
  std::filesystem::current_path("/");
}

}  // namespace
