#include "GSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CocoaFakes.h"
#include "GScopedManagedMemory.h"
#include "LogLines.h"
#include "ReplacedMethod.h"

namespace {

using testing::ElementsAre;

int objectsGone = 0;

id NoPool(id, SEL) {
  return nil;
}

}  // namespace

@interface CountedObject : NSObject
@end
@implementation CountedObject
- (void)dealloc {
  ++objectsGone;
  [super dealloc];
}
@end

namespace {

TEST(GSystem, IsMacOS) {
  EXPECT_EQ(GSystem::OSGetSystem(), 0u);
  for (int call = 0; call < 2; ++call) {
    EXPECT_TRUE(GSystem::IsMacOSX());
    EXPECT_FALSE(GSystem::IsWindows());
  }
}

TEST(GScopedManagedMemory, ObjectsDieWithTheInnermostScope) {
  GScopedManagedMemory outer;
  [[[CountedObject alloc] init] autorelease];
  {
    GScopedManagedMemory inner;
    [[[CountedObject alloc] init] autorelease];
    EXPECT_EQ(objectsGone, 0);
  }
  EXPECT_EQ(objectsGone, 1);
}

TEST(GScopedManagedMemory, LogsOnceThatThereIsNoPool) {
  LogLines log;
  // A time for the line would need a pool.
  cocoaFakes.failing = {"CFTimeZoneCreateWithName"};
  {
    const ReplacedMethod init([NSAutoreleasePool class], @selector(init), NoPool);
    GScopedManagedMemory scope;
  }
  EXPECT_THAT(log.Entries(), ElementsAre(CheckEntry("Miscellaneous", "CoreErrorCodes::kNullPointer",
                                                    "(mOSManagedMemory) == nullptr", 0x05000000)));
}

}  // namespace
