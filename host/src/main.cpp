#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <iterator>
#include <string>
#include <vector>

#include "Runner.h"
#include "Session.h"

namespace {

constexpr int kOk = 0;
constexpr int kFailed = 1;
constexpr int kUsage = 2;

/// On a terminal, says how far a long list has come. To standard error: what is redirected stays
/// as it is.
void ShowProgress(size_t played, const std::vector<host::Session>& sessions) {
  static const bool isShown = isatty(STDERR_FILENO) != 0;
  if (!isShown || sessions.size() < 2) return;
  const bool isDone = played == sessions.size();
  fmt::print(
      stderr, "\r\x1b[K{}",
      isDone ? "" : fmt::format("{}/{} {}", played + 1, sessions.size(), sessions[played].name));
}

int Run(const std::vector<std::string>& files, const host::RunOptions& options) {
  std::vector<host::Session> sessions;
  for (const std::string& file : files) {
    std::vector<host::Session> loaded = host::LoadSessions(file);
    std::move(loaded.begin(), loaded.end(), std::back_inserter(sessions));
  }
  size_t failed = 0;
  for (size_t i = 0; i < sessions.size(); ++i) {
    ShowProgress(i, sessions);
    if (i > 0 && !options.quiet) fmt::print("\n");
    if (!host::RunSession(sessions[i], options)) ++failed;
  }
  ShowProgress(sessions.size(), sessions);
  if (sessions.size() > 1) {
    fmt::print("{}{} sessions, {} failed\nresult: {}\n", options.quiet ? "" : "\n", sessions.size(),
               failed, failed == 0 ? "ok" : "failed");
  }
  return failed == 0 ? kOk : kFailed;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Plays sessions of a host application with a plug-in");
  app.require_subcommand(1);
  CLI::App* run = app.add_subcommand("run", "Plays each session in a process of its own");
  std::string plugin;
  std::string fontManager;
  host::RunOptions options;
  std::vector<std::string> files;
  run->add_option("--plugin", plugin, "The plug-in's module")->required()->check(CLI::ExistingFile);
  run->add_option("--font-manager", fontManager,
                  "The folder with the font manager's framework and executables")
      ->check(CLI::ExistingDirectory);
  run->add_flag("--quiet", options.quiet, "Shows only what failed");
  run->add_option("SESSION", files, "The session files")->required();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kOk : kUsage;
  }
  try {
    options.plugin = std::filesystem::absolute(plugin);
    if (!fontManager.empty()) options.fontManager = std::filesystem::absolute(fontManager);
    return Run(files, options);
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    return kUsage;
  }
}
