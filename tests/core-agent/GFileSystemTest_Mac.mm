#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "CocoaFakes.h"
#include "GFileSystem.h"
#include "GScopedManagedMemory.h"
#include "LogLines.h"
#include "ReplacedMethod.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kOtherEncodings =
    "[FileSystem]\t[Warning]\tGFileSystem::OSExpandPath(), called with invalid UTF8 Path. "
    "Attempting convserion with other encodings.";
const std::string kFailed = CheckEntry(
    "FileSystem", "GFileSystem::kInvalidCharacterForFileSystemRepresentation", "err", 0x0C001005);

std::function<NSString*()> expand;
int textsGone = 0;
// Where the next text comes from.
std::optional<ReplacedMethod> nextText;

}  // namespace

// Stands in for the text, to fail where a test says so and to show that it is released.
@interface ProbeText : NSObject
@end
@implementation ProbeText
- (NSString*)stringByExpandingTildeInPath {
  return expand();
}
- (void)dealloc {
  ++textsGone;
  [super dealloc];
}
@end

namespace {

id NoText(id, SEL, const char*) {
  return nil;
}

id NoTextInEncoding(id, SEL, const char*, NSStringEncoding) {
  return nil;
}

id Probe(id, SEL, const char*) {
  nextText.reset();
  return [[ProbeText alloc] init];
}

Class TextClass() {
  return object_getClass([[NSString alloc] autorelease]);
}

TEST(GFileSystemTilde, StandsForHome) {
  const GScopedManagedMemory scope;
  const std::string kHome = [NSHomeDirectory() fileSystemRepresentation];
  const std::pair<std::string, std::string> kCases[] = {
      {"~", kHome}, {"~/x", kHome + "/x"}, {"~/caf\x8E", kHome + "/caf\xC3\xA9"}, {"a/~", "a/~"}};
  for (const auto& [path, expanded] : kCases) {
    std::string result = path;
    EXPECT_EQ(GFileSystem::OSExpandPath(result), 0u);
    EXPECT_EQ(result, expanded);
  }
}

// Lines without a time, so that writing them needs no text of the platform's.
class GFileSystemExpandPath : public testing::Test {
 protected:
  void SetUp() override { cocoaFakes.failing = {"CFTimeZoneCreateWithName"}; }

  // For what the tests themselves make.
  const GScopedManagedMemory scope;
};

TEST_F(GFileSystemExpandPath, LeavesWhatIsTextInNeitherEncodingAlone) {
  const ReplacedMethod utf8(TextClass(), @selector(initWithUTF8String:), NoText);
  const ReplacedMethod roman(TextClass(), @selector(initWithCString:encoding:), NoTextInEncoding);
  LogLines log;
  std::string path = "~/x";
  EXPECT_EQ(GFileSystem::OSExpandPath(path), 0x0C001005u);
  EXPECT_EQ(path, "~/x");
  EXPECT_THAT(log.Entries(), ElementsAre(kOtherEncodings, kFailed));
}

TEST_F(GFileSystemExpandPath, LogsEveryCocoaExceptionAndClearsThePath) {
  const std::pair<std::function<NSString*()>, std::string> kCases[] = {
      {[]() -> NSString* { @throw @"any object"; }, "any object"},
      {[]() -> NSString* {
         [NSException raise:@"Unrepresentable" format:@"no such character"];
         return nil;
       },
       [[[NSException exceptionWithName:@"Unrepresentable" reason:@"no such character"
                               userInfo:nil] description] UTF8String]}};
  for (const auto& [raise, description] : kCases) {
    nextText.emplace(TextClass(), @selector(initWithUTF8String:), Probe);
    expand = raise;
    LogLines log;
    textsGone = 0;
    std::string path = "~/x";
    EXPECT_EQ(GFileSystem::OSExpandPath(path), 0x0C001005u);
    EXPECT_EQ(path, "");
    // Descriptions begin with the exception's address.
    ASSERT_EQ(log.Entries().size(), 2u);
    EXPECT_THAT(
        log.Entries()[0],
        StartsWith("[FileSystem]\t[Error]\tGFileSystem::OSExpandPath(), exception caught\n- " +
                   description.substr(0, description.find("0x"))));
    EXPECT_EQ(log.Entries()[1], kFailed);
    EXPECT_EQ(textsGone, 1);
  }
}

TEST_F(GFileSystemExpandPath, LetsOtherExceptionsPassAndReleasesTheText) {
  nextText.emplace(TextClass(), @selector(initWithUTF8String:), Probe);
  expand = []() -> NSString* { throw 516; };
  LogLines log;
  std::string path = "~/x";
  EXPECT_THROW(GFileSystem::OSExpandPath(path), int);
  EXPECT_EQ(path, "~/x");
  EXPECT_EQ(textsGone, 1);
  EXPECT_THAT(log.Entries(), IsEmpty());
}

}  // namespace
