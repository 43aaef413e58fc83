#pragma once

#include <string>
#include <vector>

namespace host {

/// Returns the calls that lead here, the innermost first, without those of this program and of the
/// C library around the plug-in's.
std::vector<std::string> Backtrace();

/// Leaves out the frames that lead from this program into the plug-in, at the end, and addresses,
/// which differ from run to run. `frames` are as `backtrace_symbols` writes them.
void CleanFrames(std::vector<std::string>& frames);

/// Returns the type and, on one line, the text of the exception that is being handled.
std::string DescribeException();

}  // namespace host
