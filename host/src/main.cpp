#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <regex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include "Findings.h"
#include "FontManager.h"
#include "HtmlFile.h"
#include "JUnitFile.h"
#include "JsonFile.h"
#include "OutputFile.h"
#include "RandomRun.h"
#include "Runner.h"
#include "Selection.h"
#include "Session.h"
#include "SessionPrinter.h"
#include "Summary.h"
#include "Sweep.h"
#include "TextFile.h"
#include "Validation.h"

namespace {

using host::Level;
using host::RunListener;
using host::RunOptions;
using host::Session;

constexpr int kOk = 0;
constexpr int kFailed = 1;
constexpr int kUsage = 2;
constexpr int kSignalled = 128;  // plus the number of the signal

constexpr char kProgram[] = "aegp-host " AEGP_HOST_VERSION;

constexpr char kFooter[] = R"(
Example:
  aegp-host run --plugin build/MyPlugin.so sessions/first.yaml

Exit codes:
  0    every session passed
  1    a session failed, or a trial of one
  2    the command line, a session file or the plug-in's module is at fault
  128+ a signal ended it, for example 130 after Ctrl-C

Read testing-a-plug-in.md for how to begin, and sessions.md for how to write a session. They
are in docs, or in share/doc/aegp-host of an installation.)";

// What the command line asks of a run, besides the options for the sessions.
struct Selection {
  std::vector<std::string> files;
  std::string filter;
  bool quiet = false;
  bool showsCalls = false;
};

// The files that are written about a run. An empty name stands for none.
struct Files {
  std::string json;
  std::string html;
  std::string junit;
};

// Plays the sessions and writes the files that are asked for. Returns the exit code.
int Play(const std::vector<Session>& sessions, const RunOptions& options, const Files& files,
         host::Detail detail, host::Summary* summary = nullptr) {
  const std::array<std::string_view, 3> paths{files.json, files.html, files.junit};
  if (std::count(paths.begin(), paths.end(), host::OutputFile::kStandardOutput) > 1) {
    throw std::runtime_error("only one file can be -, which is standard output");
  }
  std::vector<std::unique_ptr<RunListener>> writers;
  const std::string program = kProgram;
  if (!files.json.empty()) writers.push_back(std::make_unique<host::JsonFile>(files.json, program));
  if (!files.html.empty()) writers.push_back(std::make_unique<host::HtmlFile>(files.html, program));
  if (!files.junit.empty()) writers.push_back(std::make_unique<host::JUnitFile>(files.junit));
  host::SessionPrinter printer(detail);
  std::vector<RunListener*> listeners{&printer};
  if (summary) listeners.push_back(summary);
  for (const auto& writer : writers) listeners.push_back(writer.get());
  const int signal = host::PlaySessions(sessions, options, listeners);
  if (signal != 0) return kSignalled + signal;
  printer.printFindings();
  if (summary) summary->print();
  return printer.printOutcome() ? kOk : kFailed;
}

void ShowCalls(std::vector<Session>& sessions) {
  for (Session& session : sessions) session.host.showsCalls = true;
}

int Run(const Selection& selection, const RunOptions& options, const Files& files) {
  const host::FontManager fontManager(options.fontManager);
  std::vector<Session> sessions =
      host::LoadSelected(selection.files, selection.filter, fontManager);
  if (selection.showsCalls) ShowCalls(sessions);
  return Play(sessions, options, files,
              selection.quiet ? host::Detail::failures : host::Detail::everything);
}

// Nobody expects the plug-in's reports to the user here, so that they count only if warnings do.
int Validate(const Selection& selection, RunOptions options, const Files& files) {
  if (!options.strict) options.allowed.insert(host::Finding::userReport);
  const host::FontManager fontManager(options.fontManager);
  std::vector<Session> sessions =
      host::FilterSessions(host::ValidationSessions(fontManager), selection.filter);
  ShowCalls(sessions);
  host::Summary summary;
  return Play(sessions, options, files, host::Detail::findings, &summary);
}

int List(const Selection& selection, const RunOptions& options) {
  const host::FontManager fontManager(options.fontManager);
  for (const Session& session :
       host::LoadSelected(selection.files, selection.filter, fontManager)) {
    fmt::print("{}\n", session.name);
  }
  return kOk;
}

// The options of `sweep` and `random`.
struct Trials {
  std::string knownIssues;  // the file, or empty for none
  std::string save;
  uint64_t seed = 1;
  uint64_t count = 1000;
};

// Prints the outcome. Returns the exit code.
int EndTrials(const std::string& outcome, const host::FailurePrinter& printer, int signal) {
  fmt::print("{}, {} failed\n", outcome, printer.count());
  if (signal != 0) return kSignalled + signal;
  fmt::print("result: {}\n", printer.count() > 0 ? "failed" : "ok");
  return printer.count() > 0 ? kFailed : kOk;
}

host::KnownIssues LoadKnownIssuesOf(const Trials& trials, const host::SessionPart& part) {
  return trials.knownIssues.empty() ? host::KnownIssues{}
                                    : host::LoadKnownIssues(trials.knownIssues, part);
}

// Before anything is played, which can take minutes.
void MakeFolder(const std::string& folder) {
  if (folder.empty()) return;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) {
    throw std::runtime_error(fmt::format("can't make the folder {}: {}", folder, error.message()));
  }
}

int Sweep(const Selection& selection, const Trials& trials, const RunOptions& options) {
  const host::FontManager fontManager(options.fontManager);
  const host::KnownIssues knownIssues = LoadKnownIssuesOf(trials, fontManager);
  std::vector<Session> sessions =
      host::LoadSelected(selection.files, selection.filter, fontManager);
  for (Session& session : sessions) host::AddKnownIssues(knownIssues, session);
  const size_t count = sessions.size();
  MakeFolder(trials.save);
  host::FailurePrinter printer(trials.save);
  const host::SweepResult result = host::Sweep(std::move(sessions), options, fontManager, printer);
  return EndTrials(fmt::format("{} calls in {} session{}, {} trials", result.calls, count,
                               count == 1 ? "" : "s", result.trials),
                   printer, result.signal);
}

int PlayRandom(const Trials& trials, const RunOptions& options) {
  const host::FontManager fontManager(options.fontManager);
  const host::RandomOptions random{trials.seed, trials.count,
                                   LoadKnownIssuesOf(trials, fontManager)};
  MakeFolder(trials.save);
  host::FailurePrinter printer(trials.save);
  const host::RandomResult result = host::PlayRandomSessions(random, options, fontManager, printer);
  return EndTrials(fmt::format("{} session{} of seed {}", result.played,
                               result.played == 1 ? "" : "s", random.seed),
                   printer, result.signal);
}

int ListFindings() {
  for (const host::FindingKind& kind : host::kFindingKinds) {
    fmt::print("{:<26}{:<9}{}\n", kind.name, kind.level == Level::error ? "error" : "warning",
               kind.sentence);
  }
  return kOk;
}

void AddFontManager(CLI::App& command, std::string& fontManager) {
  command
      .add_option("--font-manager", fontManager,
                  "The folder with the font manager's framework and executables")
      ->check(CLI::ExistingDirectory);
}

void AddFilter(CLI::App& command, Selection& selection) {
  command.add_option("--filter", selection.filter,
                     "Takes only the sessions whose name the regular expression finds");
}

void AddSelection(CLI::App& command, Selection& selection, std::string& fontManager) {
  command.add_option("SESSION", selection.files, "The session files")->required();
  AddFilter(command, selection);
  AddFontManager(command, fontManager);
}

void AddFiles(CLI::App& command, Files& files) {
  command.add_option("--json", files.json, "Writes the timelines and findings as JSON objects");
  command.add_option("--html", files.html, "Writes a page that shows the timelines and findings");
  command.add_option("--junit", files.junit, "Writes the results as a JUnit file");
}

// `module` is how the command line names the plug-in's module.
void AddRunOptions(CLI::App& command, const char* module, RunOptions& options,
                   std::vector<std::string>& allowed) {
  command.add_option(module, options.module.path, "The plug-in's module")
      ->required()
      ->check(CLI::ExistingFile);
  command.add_option("--entry", options.module.entryPoint, "The name of the entry point")
      ->capture_default_str();
  command
      .add_option_function<int64_t>(
          "--timeout", [&](int64_t seconds) { options.timeout = std::chrono::seconds(seconds); },
          "How many seconds a call of the plug-in, or the host's work between two, may take, 30 by "
          "default")
      ->check(CLI::Range(1, 86400));
  command.add_flag("--strict", options.strict, "Lets warnings fail a session");
  std::vector<std::string> names(host::kFindingKinds.size());
  std::transform(host::kFindingKinds.begin(), host::kFindingKinds.end(), names.begin(),
                 [](const host::FindingKind& kind) { return std::string(kind.name); });
  command.add_option("--allow", allowed, "Leaves out a finding, by its name")
      ->allow_extra_args(false)
      ->check(CLI::IsMember(names).description(""));
}

void AddJobs(CLI::App& command, size_t& jobs) {
  command.add_option("--jobs", jobs, "How many sessions are played at the same time")
      ->check(CLI::Range(1, 1024))
      ->capture_default_str();
}

void AddTrials(CLI::App& command, Trials& trials, size_t& jobs) {
  command
      .add_option("--known-issues", trials.knownIssues,
                  "A file whose 'known issues' are those of every session too")
      ->check(CLI::ExistingFile);
  command.add_option("--save", trials.save, "The folder for the sessions that repeat what failed");
  AddJobs(command, jobs);
}

// What the command line says.
struct Arguments {
  Selection selection;
  RunOptions options;
  Files files;
  Trials trials;
  std::string fontManager;
  std::vector<std::string> allowed;
};

void AddPlaying(CLI::App& app, Arguments& arguments) {
  CLI::App& run = *app.add_subcommand("run", "Plays each session in a process of its own");
  AddRunOptions(run, "--plugin", arguments.options, arguments.allowed);
  AddSelection(run, arguments.selection, arguments.fontManager);
  run.add_flag("--quiet", arguments.selection.quiet, "Shows only the sessions that fail");
  run.add_flag("--calls", arguments.selection.showsCalls,
               "Shows each call of the host with its arguments and its result");
  CLI::App& validate = *app.add_subcommand(
      "validate", "Plays built-in sessions that suit any plug-in, and says what it finds");
  AddRunOptions(validate, "MODULE", arguments.options, arguments.allowed);
  AddFilter(validate, arguments.selection);
  AddFontManager(validate, arguments.fontManager);
  for (CLI::App* const command : {&run, &validate}) {
    AddFiles(*command, arguments.files);
    AddJobs(*command, arguments.options.jobs);
    command->add_flag("--keep", arguments.options.keep,
                      "Keeps the session folders and says where they are");
    command->add_flag("--fail-fast", arguments.options.failFast,
                      "Ends with the first session that fails");
  }
}

void AddExploring(CLI::App& app, Arguments& arguments) {
  Trials& trials = arguments.trials;
  CLI::App& sweep = *app.add_subcommand(
      "sweep", "Plays each session again for each call in it, with that call going wrong");
  AddRunOptions(sweep, "--plugin", arguments.options, arguments.allowed);
  AddSelection(sweep, arguments.selection, arguments.fontManager);
  AddTrials(sweep, trials, arguments.options.jobs);
  CLI::App& random = *app.add_subcommand("random", "Plays sessions of random steps");
  AddRunOptions(random, "--plugin", arguments.options, arguments.allowed);
  AddFontManager(random, arguments.fontManager);
  AddTrials(random, trials, arguments.options.jobs);
  random.add_option("--seed", trials.seed, "The seed: the same one gives the same sessions")
      ->check(CLI::Range(int64_t{0}, std::numeric_limits<int64_t>::max()))
      ->capture_default_str();
  random.add_option("--count", trials.count, "How many sessions to play")
      ->check(CLI::Range(int64_t{1}, std::numeric_limits<int64_t>::max()))
      ->capture_default_str();
}

void AddListing(CLI::App& app, Arguments& arguments) {
  CLI::App& list = *app.add_subcommand("list", "Lists the sessions and their variants");
  AddSelection(list, arguments.selection, arguments.fontManager);
  app.add_subcommand("findings", "Lists what a session can find wrong");
}

int RunCommand(const std::string& command, Arguments& arguments) {
  if (command == "findings") return ListFindings();
  RunOptions& options = arguments.options;
  if (!arguments.fontManager.empty()) {
    options.fontManager = std::filesystem::absolute(arguments.fontManager);
  }
  if (command == "list") return List(arguments.selection, options);
  options.module.path = std::filesystem::absolute(options.module.path).string();
  for (const std::string& name : arguments.allowed) {
    options.allowed.insert(*host::FindingNamed(name));
  }
  if (command == "sweep") return Sweep(arguments.selection, arguments.trials, options);
  if (command == "random") return PlayRandom(arguments.trials, options);
  if (command == "validate") return Validate(arguments.selection, options, arguments.files);
  return Run(arguments.selection, options, arguments.files);
}

int RunCommandLine(int argc, char** argv) {
  CLI::App app("Plays sessions of a host application with a plug-in");
  app.require_subcommand(1);
  app.footer(kFooter);
  app.set_version_flag("--version", kProgram);
  Arguments arguments;
  arguments.options.jobs = std::max(1U, std::thread::hardware_concurrency());
  AddPlaying(app, arguments);
  AddExploring(app, arguments);
  AddListing(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const int code = app.exit(error) == 0 ? kOk : kUsage;
    if (!std::cout.flush()) throw std::runtime_error("can't write the output");
    return code;
  }
  return RunCommand(app.get_subcommands().front()->get_name(), arguments);
}

}  // namespace

int main(int argc, char** argv) {
  // A reader of the output that goes away is a failed write.
  std::signal(SIGPIPE, SIG_IGN);
  // A caller that ignores it would keep this process from hearing how the sessions ended.
  std::signal(SIGCHLD, SIG_DFL);
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  try {
    const int code = RunCommandLine(argc, argv);
    if (std::fflush(stdout) != 0) throw std::runtime_error("can't write the output");
    return code;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return kUsage;
  }
}
