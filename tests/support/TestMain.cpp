#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

// POSIX has each program declare it, though Linux does so itself.
extern "C" char** environ;  // NOLINT(readability-redundant-declaration)

namespace {

std::vector<std::string> Variables() {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable; ++variable) variables.emplace_back(*variable);
  return variables;
}

// Gives each test the environment and the working directory that the program started with.
class EnvironmentRestorer : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo&) override {
    for (const std::string& variable : Variables()) {
      unsetenv(variable.substr(0, variable.find('=')).c_str());
    }
    for (const std::string& variable : mVariables) {
      const size_t sign = variable.find('=');
      setenv(variable.substr(0, sign).c_str(), variable.substr(sign + 1).c_str(), 1);
    }
    std::filesystem::current_path(mFolder);
  }

  const std::vector<std::string> mVariables = Variables();
  const std::filesystem::path mFolder = std::filesystem::current_path();
};

}  // namespace

// Puts the test into a process session of its own, so that it finds no font manager that another
// test runs. A program that a shell starts by itself leads a group, and stays in its session.
int main(int argc, char** argv) {
  setsid();
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new EnvironmentRestorer);
  return RUN_ALL_TESTS();
}
