#pragma once

#include <functional>
#include <string_view>

/// Traces a text. Formats it as `vsnprintf` does, cut at 65535 bytes, and drops it: there is no
/// sink by default. `indentChange` is +1 where a traced operation begins, -1 where it ends, and 0
/// otherwise. Main thread only.
[[gnu::format(printf, 2, 3)]] void OutputIndentedAndFormattedString(int indentChange,
                                                                    const char* format, ...);

/// Tests whether traces go to a sink. A trace that asks the platform for more than the plug-in
/// needs, or that a tick makes, is made only then.
bool TraceIsOn();

/// Sends later traces to `sink`, each indented by two blanks a level, and starts at level 0. An
/// empty function removes the sink.
void SetTraceSink(std::function<void(std::string_view text)> sink);
