#pragma once

/// The rows of the plug-in's string table.
enum StringRow : int {
  kStringNone = 0,
  kStringMenuItem = 1,
  kStringAbout = 2,
  kStringStartFailed = 3,
};

/// Returns the row's text, UTF-8 and static. Doesn't check `row`, which is a `StringRow`.
const char* GetStringPtr(int row);
