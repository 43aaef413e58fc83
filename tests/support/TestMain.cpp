#include <gtest/gtest.h>
#include <unistd.h>

// Puts the test into a process session of its own, so that it finds no font manager that another
// test runs. A program that a shell starts by itself leads a group, and stays in its session.
int main(int argc, char** argv) {
  setsid();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
