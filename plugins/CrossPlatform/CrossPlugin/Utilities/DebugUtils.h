#pragma once

#include <functional>
#include <string_view>

/// The plug-in's trace call. Formats the text as `vsnprintf` does, cut at 65535 bytes, and drops
/// it: there is no sink by default. `indentChange` is the change of the trace's indent: +1 where a
/// traced operation begins, -1 where it ends, 0 otherwise. Main thread only.
[[gnu::format(printf, 2, 3)]] void OutputIndentedAndFormattedString(int indentChange,
                                                                    const char* format, ...);

/// Gives each trace, with two blanks in front of it for each level of indent, to `sink`, which
/// replaces the one before. For tests. An empty function takes the sink away.
void SetTraceSink(std::function<void(std::string_view text)> sink);
