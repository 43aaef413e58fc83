#include "TraceFile.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "DebugUtils.h"
#include "GLogger.h"
#include "TemporaryFolder.h"

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

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
  EXPECT_THAT(
      LinesOf(file),
      ElementsAre("an earlier run",
                  MatchesRegex("Trace of process [0-9]+ on [a-z0-9_]+, begun at .*Z"), "begin 1",
                  MatchesRegex("\\[.*Z\\]\t\\[FileSystem\\]\t\\[Warning\\]\twarned"), "  inside",
                  "  inside", "end", "inside"));
}

TEST_F(TraceFileTest, BelongsToTheUserAndToThisProcess) {
  const std::filesystem::path file = folder.path() / "trace";
  setenv("TYPELARK_TRACE", file.c_str(), 1);
  StartTraceFile();
  EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0600));
  struct stat own {};
  stat(file.c_str(), &own);
  int found = 0;
  for (int descriptor = 3; descriptor < 1000; ++descriptor) {
    struct stat other {};
    if (fstat(descriptor, &other) != 0 || other.st_ino != own.st_ino) continue;
    EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
    ++found;
  }
  EXPECT_EQ(found, 1);
}

TEST_F(TraceFileTest, IsNotThereWithoutTheVariable) {
  testing::internal::CaptureStderr();
  StartTraceFile();
  EXPECT_FALSE(TraceIsOn());
  EXPECT_FALSE(IsNews("subject", "text"));
  GLogger::GetSharedInstance()->LogWarning("FileSystem", "warned");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
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
