#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

#include "TemporaryFolder.h"

struct Played {
  int code = -1;
  std::string output;
};

/// Runs the shell's command, with something to read. The output is that of both streams.
inline Played RunCommand(const std::string& command) {
  Played played;
  std::FILE* const pipe = popen(("echo input | { " + command + "; } 2>&1").c_str(), "r");
  std::array<char, 4096> buffer;
  while (const size_t size = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
    played.output.append(buffer.data(), size);
  }
  const int status = pclose(pipe);
  played.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return played;
}

inline Played RunHost(const std::string& arguments, const std::string& subcommand = "run") {
  return RunCommand(AEGP_HOST " " + subcommand + " " + arguments);
}

/// Returns the path as one word of a shell's command.
inline std::string Word(const std::filesystem::path& path) {
  return "\"" + path.string() + "\"";
}

/// Plays the session with the test plug-in.
inline Played Play(const std::string& session, const std::string& options = "",
                   const std::string& subcommand = "run") {
  const TemporaryFolder folder;
  const std::string file = Word(folder.Write("story.yaml", session));
  return RunHost("--plugin " TEST_PLUGIN " " + options + " " + file, subcommand);
}

inline constexpr char kWithFontManager[] = "--font-manager " FONT_MANAGER;

/// Returns a session in which the test plug-in shows the behaviour.
inline std::string Behaviour(const std::string& behaviour, const std::string& steps = "[tick]") {
  return "files: {behaviour: \"" + behaviour + "\"}\nsteps: " + steps + "\n";
}
