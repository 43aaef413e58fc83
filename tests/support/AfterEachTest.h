#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <utility>

/// Runs `work` after every test of the program, so that a fake starts the next test as new. Returns
/// true: a static object can call it.
inline bool AfterEachTest(std::function<void()> work) {
  struct Listener : testing::EmptyTestEventListener {
    explicit Listener(std::function<void()> work) : mWork(std::move(work)) {}
    void OnTestEnd(const testing::TestInfo&) override { mWork(); }
    std::function<void()> mWork;
  };
  testing::UnitTest::GetInstance()->listeners().Append(new Listener(std::move(work)));
  return true;
}
