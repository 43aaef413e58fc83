#include <gmock/gmock.h>

#include <functional>
#include <optional>

#include "FreshCocoaFakes.h"
#include "GFileSystem.h"
#include "GScopedManagedMemory.h"
#include "LogLines.h"
#include "ReplacedMethod.h"

namespace {

using testing::ElementsAre;
using testing::StartsWith;

const std::string kFailed = CheckEntry(
    "FileSystem", "GFileSystem::kInvalidCharacterForFileSystemRepresentation", "err", 0x0C001005);

std::function<NSString*()> expand;
int textsGone = 0;
// Replaces the constructor of the next text.
std::optional<ReplacedMethod> nextText;

}  // namespace

// Replaces the text: expands as a test says, and counts its releases.
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

template <typename... Parameters>
id NoText(id, SEL, Parameters...) {
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
  const std::pair<std::string, std::string> rows[] = {
      {"~", kHome}, {"~/x", kHome + "/x"}, {"~/caf\x8E", kHome + "/caf\xC3\xA9"}, {"a/~", "a/~"}};
  for (const auto& [path, expanded] : rows) {
    SCOPED_TRACE(path);
    std::string result = path;
    EXPECT_EQ(GFileSystem::OSExpandPath(result), 0u);
    EXPECT_EQ(result, expanded);
  }
}

class GFileSystemExpandPath : public testing::Test {
 protected:
  // Lines without a time need no text of the platform.
  void SetUp() override { cocoaFakes.failing = {"CFTimeZoneCreateWithName"}; }
  // For the objects that the tests make.
  const GScopedManagedMemory scope;
};

TEST_F(GFileSystemExpandPath, LeavesAPathAloneThatIsNoTextInEitherEncoding) {
  const ReplacedMethod utf8(TextClass(), @selector(initWithUTF8String:), NoText<const char*>);
  const ReplacedMethod roman(TextClass(), @selector(initWithCString:encoding:),
                             NoText<const char*, NSStringEncoding>);
  LogLines log;
  std::string path = "~/x";
  EXPECT_EQ(GFileSystem::OSExpandPath(path), 0x0C001005u);
  EXPECT_EQ(path, "~/x");
  EXPECT_THAT(log.Entries(), ElementsAre(StartsWith("[FileSystem]\t[Warning]\t"), kFailed));
}

// Expects the text to live until the exception is logged.
struct TextWatcher : GLogAppender {
  void Append(const std::string& line) override {
    EXPECT_EQ(textsGone, line.find("caught") == std::string::npos ? 1 : 0);
  }
};

TEST_F(GFileSystemExpandPath, LogsWhyThePlatformFailedAndClearsThePath) {
  GLogger::GetSharedInstance()->AddAppender("text", std::make_unique<TextWatcher>());
  const id any = @"any object";
  NSException* const known = [NSException exceptionWithName:@"Unrepresentable"
                                                     reason:@"no such character"
                                                   userInfo:nil];
  const std::pair<std::function<NSString*()>, std::string> rows[] = {
      {[=]() -> NSString* { @throw any; }, "any object"},
      {[=]() -> NSString* { @throw known; }, [[known description] UTF8String]},
      {[]() -> NSString* { return nil; }, "No file system representation"}};
  for (const auto& [expansion, description] : rows) {
    nextText.emplace(TextClass(), @selector(initWithUTF8String:), Probe);
    expand = expansion;
    LogLines log;
    textsGone = 0;
    std::string path = "~/x";
    EXPECT_EQ(GFileSystem::OSExpandPath(path), 0x0C001005u) << description;
    EXPECT_EQ(path, "") << description;
    EXPECT_THAT(log.Entries(), ElementsAre("[FileSystem]\t[Error]\tGFileSystem::OSExpandPath(), "
                                           "exception caught\n- " +
                                               description,
                                           kFailed));
    EXPECT_EQ(textsGone, 1) << description;
  }
}

TEST_F(GFileSystemExpandPath, LetsOtherExceptionsPassAndReleasesTheText) {
  nextText.emplace(TextClass(), @selector(initWithUTF8String:), Probe);
  expand = []() -> NSString* { throw 516; };
  textsGone = 0;
  std::string path = "~/x";
  EXPECT_THROW(GFileSystem::OSExpandPath(path), int);
  EXPECT_EQ(path, "~/x");
  EXPECT_EQ(textsGone, 1);
}

}  // namespace
