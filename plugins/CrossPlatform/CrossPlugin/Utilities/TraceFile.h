#pragma once

/// Traces to the file that `TYPELARK_TRACE` in the environment names by an absolute path. Appends
/// to it what `OutputIndentedAndFormattedString` gets from now on, and the logger's lines, each at
/// once.
///
/// Does nothing without the variable. If the path isn't absolute or the file can't be opened,
/// writes one line to standard error and traces nothing. Main thread only.
void StartTraceFile();
