#pragma once

/// The plug-in's strings by their row in the string table.
enum StringRow : int {
  kStringNone = 0,
  kStringMenuItem = 1,
  kStringAbout = 2,
  kStringStartFailed = 3,
};

/// The text of the row, UTF-8, static. `row` is a position from 0 to 3 and isn't checked.
const char* GetStringPtr(int row);
