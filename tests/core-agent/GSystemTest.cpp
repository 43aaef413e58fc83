#include "GSystem.h"

#include <gmock/gmock.h>

#include "PosixFakes.h"

namespace {

TEST(GSystem, SleepsForMicrosecondsInThirtyTwoBits) {
  for (const unsigned int milliseconds : {0u, 1u, 4294967u, 4294968u}) {
    GSystem::OSSleep(milliseconds);
  }
  EXPECT_THAT(posixFakes.sleeps, testing::ElementsAre(0u, 1000u, 4294967000u, 704u));
}

}  // namespace
