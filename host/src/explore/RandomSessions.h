#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "Runner.h"
#include "SessionPart.h"

namespace host {

/// Makes up a tolerant session, and returns the text of its file: its set-up, and steps of the
/// user, the host, the clock and what `part` knows, in any order. One session in two can have
/// faults. The same seed and number give the same session on every machine.
std::string MakeRandomSession(uint64_t seed, uint64_t number, const SessionPart& part);

/// Makes up sessions of the seed and plays them. Shortens and prints each one that fails, and
/// writes it to the folder `save`, unless that is empty. Stops after a few failures. Returns
/// whether none failed. Throws `std::runtime_error` if `save` can't be made, and as `PlaySessions`
/// does.
bool PlayRandomSessions(uint64_t seed, uint64_t count, const RunOptions& options,
                        const SessionPart& part, const std::filesystem::path& save);

}  // namespace host
