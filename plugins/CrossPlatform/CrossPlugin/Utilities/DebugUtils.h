#pragma once

#include <functional>
#include <string>
#include <string_view>

/// Traces a text. Formats it as `vsnprintf` does, cut at 65535 bytes, and drops it: there is no
/// sink by default. `indentChange` is +1 where a traced operation begins, -1 where it ends, and 0
/// otherwise. Main thread only.
[[gnu::format(printf, 2, 3)]] void OutputIndentedAndFormattedString(int indentChange,
                                                                    const char* format, ...);

/// Tests whether traces go to a sink. Texts that only help a person are made only then.
bool TraceIsOn();

/// Tests whether traces go to a sink and `text` differs from the last one of that `subject`. For
/// what ticks find again and again.
bool IsNews(const std::string& subject, const std::string& text);

/// Sends later traces to `sink`, each indented by two blanks a level. Starts at level 0, and takes
/// everything for news. An empty function removes the sink.
void SetTraceSink(std::function<void(std::string_view text)> sink);
