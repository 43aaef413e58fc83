#include "GScopedManagedMemory.h"

#include <gmock/gmock.h>

#include "FreshCocoaFakes.h"
#include "GSystem.h"
#include "LogLines.h"
#include "ReplacedMethod.h"

namespace {

id NoPool(id, SEL) {
  return nil;
}

TEST(GScopedManagedMemory, ObjectsDieWithTheInnermostScope) {
  const GScopedManagedMemory outer;
  NSObject* const object = [[NSObject alloc] init];
  {
    const GScopedManagedMemory inner;
    [[object retain] autorelease];
    EXPECT_EQ([object retainCount], 2u);
  }
  EXPECT_EQ([object retainCount], 1u);
  [object release];
}

TEST(GSystem, IsMacOSX) {
  EXPECT_TRUE(GSystem::IsMacOSX());
  EXPECT_FALSE(GSystem::IsWindows());
}

TEST(GScopedManagedMemory, LogsOnceThatThereIsNoPool) {
  LogLines log;
  // A time for the line would need a pool.
  cocoaFakes.failing = {"CFTimeZoneCreateWithName"};
  {
    const ReplacedMethod init([NSAutoreleasePool class], @selector(init), NoPool);
    GScopedManagedMemory scope;
  }
  EXPECT_THAT(log.Entries(),
              testing::ElementsAre(CheckEntry("Miscellaneous", "CoreErrorCodes::kNullPointer",
                                              "(mOSManagedMemory) == nullptr", 0x05000000)));
}

}  // namespace
