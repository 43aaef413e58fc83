#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Findings.h"
#include "FontManager.h"
#include "JUnitFile.h"
#include "JsonFile.h"
#include "OutputFile.h"
#include "RandomSessions.h"
#include "Runner.h"
#include "SessionFiles.h"
#include "SessionPrinter.h"
#include "Sweep.h"

namespace {

using host::RunListener;
using host::Session;
using host::SessionPart;

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

// What the command line says. An empty name of a file stands for none.
struct Arguments {
  host::RunOptions options;
  std::vector<std::string> sessions;  // their files; none for the built-in ones
  std::filesystem::path fontManager;  // absolute
  std::string filter;
  bool quiet = false;
  bool showsCalls = false;
  std::string json;
  std::string html;
  std::string junit;
  std::string save;
  uint64_t seed = 1;
  uint64_t count = 1000;
};

std::vector<std::unique_ptr<RunListener>> MakeFiles(const Arguments& arguments) {
  const std::array paths{arguments.json, arguments.html, arguments.junit};
  if (std::count(paths.begin(), paths.end(), host::OutputFile::kStandardOutput) > 1) {
    throw std::runtime_error("only one file can be -, which is standard output");
  }
  const auto& [json, html, junit] = paths;
  std::vector<std::unique_ptr<RunListener>> files;
  using host::JsonFile;
  using Form = JsonFile::Form;
  if (!json.empty()) files.push_back(std::make_unique<JsonFile>(Form::lines, json, kProgram));
  if (!html.empty()) files.push_back(std::make_unique<JsonFile>(Form::page, html, kProgram));
  if (!junit.empty()) files.push_back(std::make_unique<host::JUnitFile>(junit));
  return files;
}

// Each command returns whether all is well.

// Plays the sessions of files, or those that suit any plug-in.
bool Play(Arguments& arguments, const SessionPart& fontManager) {
  const bool validates = arguments.sessions.empty();
  // No step here can expect the plug-in's reports to the user, so they count only if warnings do.
  if (validates && !arguments.options.strict) {
    arguments.options.allowed.insert(host::Finding::userReport);
  }
  std::vector<Session> sessions =
      host::LoadSessions(arguments.sessions, arguments.filter, fontManager);
  for (Session& session : sessions) session.host.showsCalls = arguments.showsCalls || validates;
  const std::vector<std::unique_ptr<RunListener>> files = MakeFiles(arguments);
  host::SessionPrinter printer(validates         ? host::Detail::validation
                               : arguments.quiet ? host::Detail::failures
                                                 : host::Detail::everything);
  std::vector<RunListener*> listeners{&printer};
  for (const auto& file : files) listeners.push_back(file.get());
  host::PlaySessions(host::EachOf(sessions), arguments.options, listeners);
  return host::CaughtSignal() == 0 && printer.printOutcome();
}

bool List(Arguments& arguments, const SessionPart& fontManager) {
  for (const Session& session :
       host::LoadSessions(arguments.sessions, arguments.filter, fontManager)) {
    fmt::print("{}\n", session.name);
  }
  return true;
}

bool Sweep(Arguments& arguments, const SessionPart& fontManager) {
  return host::Sweep(host::LoadSessions(arguments.sessions, arguments.filter, fontManager),
                     arguments.options, fontManager, arguments.save);
}

bool PlayRandom(Arguments& arguments, const SessionPart& fontManager) {
  return host::PlayRandomSessions(arguments.seed, arguments.count, arguments.options, fontManager,
                                  arguments.save);
}

void ListFindings() {
  for (const host::FindingKind& kind : host::kFindingKinds) {
    fmt::print("{:<26}{:<9}{}\n", kind.name, kind.level == host::Level::error ? "error" : "warning",
               kind.sentence);
  }
}

// For a command that plays. `module` is how the command line names the plug-in's module.
void AddPlaying(CLI::App& command, const char* module, host::RunOptions& options) {
  const auto setModule = [&](const std::string& file) {
    options.module.path = std::filesystem::absolute(file).string();
  };
  command.add_option_function<std::string>(module, setModule, "The plug-in's module")
      ->required()
      ->check(CLI::ExistingFile);
  command.add_option("--entry", options.module.entryPoint, "The name of the entry point")
      ->capture_default_str();
  command
      .add_option(
          "--timeout", options.timeoutSeconds,
          "How many seconds a call of the plug-in, or the host's work between two, may take")
      ->check(CLI::Range(1, 86400))
      ->capture_default_str();
  command.add_flag("--strict", options.strict, "Lets warnings fail a session");
  const auto allow = [&](const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      const auto finding = host::FindingNamed(name);
      if (!finding) throw CLI::ValidationError("--allow", "there is no finding '" + name + "'");
      options.allowed.insert(*finding);
    }
  };
  command
      .add_option_function<std::vector<std::string>>("--allow", allow,
                                                     "Leaves out a finding, by its name")
      ->allow_extra_args(false);
  const auto readKnownIssues = [&](const std::string& file) {
    options.knownIssues = host::LoadKnownIssues(file);
  };
  command
      .add_option_function<std::string>(
          "--known-issues", readKnownIssues,
          "A file whose 'known issues' are those of every session too")
      ->check(CLI::ExistingFile);
  command.add_option("--jobs", options.jobs, "How many sessions are played at the same time")
      ->check(CLI::Range(1, 1024))
      ->capture_default_str();
}

void AddFiles(CLI::App& command, Arguments& arguments) {
  command.add_option("--json", arguments.json, "Writes the timelines and findings as JSON objects");
  command.add_option("--html", arguments.html,
                     "Writes a page that shows the timelines and findings");
  command.add_option("--junit", arguments.junit, "Writes the results as a JUnit file");
  command.add_flag("--keep", arguments.options.keep,
                   "Keeps the session folders and says where they are");
  command.add_flag("--fail-fast", arguments.options.failFast,
                   "Ends with the first session that fails");
}

using Run = bool (*)(Arguments&, const SessionPart&);

// Adds a command, which sets the exit code if it is called.
CLI::App* AddCommand(CLI::App& app, const char* name, const char* about, Run run,
                     Arguments& arguments, int& code) {
  CLI::App* const command = app.add_subcommand(name, about);
  std::filesystem::path& folder = arguments.fontManager;
  command->callback(
      [&, run] { code = run(arguments, host::MakeFontManager(folder)) ? kOk : kFailed; });
  command
      ->add_option_function<std::string>(
          "--font-manager",
          [&](const std::string& text) { folder = std::filesystem::absolute(text); },
          "The folder with the font manager's framework and executables")
      ->check(CLI::ExistingDirectory);
  return command;
}

void AddCommands(CLI::App& app, Arguments& arguments, int& code) {
  const auto add = [&](const char* name, const char* about, Run run) {
    return AddCommand(app, name, about, run, arguments, code);
  };
  CLI::App* const run = add("run", "Plays each session in a process of its own", Play);
  CLI::App* const validate = add(
      "validate", "Plays built-in sessions that suit any plug-in, and says what it finds", Play);
  CLI::App* const sweep = add(
      "sweep", "Plays each session again for each call in it, with that call going wrong", Sweep);
  CLI::App* const random = add("random", "Plays sessions of random steps", PlayRandom);
  CLI::App* const list = add("list", "Lists the sessions and their variants", List);
  app.add_subcommand("findings", "Lists what a session can find wrong")->callback(ListFindings);
  AddPlaying(*validate, "MODULE", arguments.options);
  for (CLI::App* const command : {run, sweep, random}) {
    AddPlaying(*command, "--plugin", arguments.options);
  }
  for (CLI::App* const command : {run, sweep, list}) {
    command->add_option("SESSION", arguments.sessions, "The session files")->required();
  }
  for (CLI::App* const command : {run, validate, sweep, list}) {
    command->add_option("--filter", arguments.filter,
                        "Takes only the sessions whose name the regular expression finds");
  }
  for (CLI::App* const command : {run, validate}) AddFiles(*command, arguments);
  for (CLI::App* const command : {sweep, random}) {
    command->add_option("--save", arguments.save,
                        "The folder for the sessions that repeat what failed");
  }
  random->add_option("--seed", arguments.seed, "The seed: the same one gives the same sessions")
      ->check(CLI::NonNegativeNumber)
      ->capture_default_str();
  random->add_option("--count", arguments.count, "How many sessions to play")
      ->check(CLI::Range(1, 1'000'000'000))
      ->capture_default_str();
  run->add_flag("--quiet", arguments.quiet, "Shows only the sessions that fail");
  run->add_flag("--calls", arguments.showsCalls,
                "Shows each call of the host with its arguments and its result");
}

int RunCommandLine(int argc, char** argv) {
  CLI::App app("Plays sessions of a host application with a plug-in");
  app.require_subcommand(1);
  app.footer(kFooter);
  app.set_version_flag("--version", kProgram);
  Arguments arguments;
  arguments.options.jobs = std::max(1U, std::thread::hardware_concurrency());
  int code = kOk;
  AddCommands(app, arguments, code);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kOk : kUsage;
  }
  const int signal = host::CaughtSignal();
  return signal != 0 ? kSignalled + signal : code;
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
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
      throw std::runtime_error("can't write the output");
    return code;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return kUsage;
  }
}
