#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
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
constexpr int kInterrupted = 130;

volatile std::sig_atomic_t interrupted = 0;

// Shows the progress on a terminal, and removes it for an empty text. Writes to standard error, so
// that redirected output stays the same.
void ShowProgress(const std::string& text) {
  static const bool isShown = isatty(STDERR_FILENO) != 0;
  if (isShown) fmt::print(stderr, "\r\x1b[K{}", text);
}

int Run(const std::vector<std::string>& files, const host::RunOptions& options) {
  std::vector<host::Session> sessions;
  for (const std::string& file : files) {
    std::vector<host::Session> loaded = host::LoadSessions(file);
    std::move(loaded.begin(), loaded.end(), std::back_inserter(sessions));
  }
  // Ctrl-C ends the process of the session. This one goes on to remove its folder.
  std::signal(SIGINT, [](int) { interrupted = 1; });
  size_t failed = 0;
  for (const host::Session& session : sessions) {
    const auto number = &session - sessions.data() + 1;
    if (options.quiet) ShowProgress(fmt::format("{}/{} {}", number, sessions.size(), session.name));
    if (number > 1 && !options.quiet) fmt::print("\n");
    const std::vector<std::string> failures = host::PlaySession(session, options);
    if (options.quiet) ShowProgress("");
    if (interrupted != 0) return kInterrupted;
    host::PrintResult(session, options, failures);
    if (!failures.empty()) ++failed;
  }
  if (sessions.size() > 1) {
    const bool showsSessions = !options.quiet || failed > 0;
    fmt::print("{}{} sessions, {} failed\nresult: {}\n", showsSessions ? "\n" : "", sessions.size(),
               failed, failed == 0 ? "ok" : "failed");
  }
  return failed == 0 ? kOk : kFailed;
}

int RunCommandLine(int argc, char** argv) {
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
  options.plugin = std::filesystem::absolute(plugin);
  if (!fontManager.empty()) options.fontManager = std::filesystem::absolute(fontManager);
  return Run(files, options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return RunCommandLine(argc, argv);
  } catch (const std::exception& error) {
    if (interrupted != 0) return kInterrupted;
    std::fprintf(stderr, "%s\n", error.what());
    return kUsage;
  }
}
