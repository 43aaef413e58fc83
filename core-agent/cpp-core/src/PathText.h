#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

// The platform's part of `GFileSystem::OSExpandPath`: one function for each primitive.

/// A path as the platform's own text, or null.
using PathText = std::shared_ptr<const void>;

/// Reads the bytes up to the NUL as UTF-8. Returns null if they aren't.
PathText OSTextFromUTF8(const char* bytes);

/// Reads each byte up to the NUL as a character of Mac OS Roman. Returns null if the platform
/// can't.
PathText OSTextFromMacOSRoman(const char* bytes);

/// Replaces a tilde at the start by the full path that it stands for. Returns the bytes that file
/// system calls take, or raises a platform exception. `text` must not be null.
std::string OSExpandTilde(const PathText& text);

/// Runs `work` and returns the description of the platform exception that ended it, if one did.
/// Other exceptions pass.
std::optional<std::string> OSExceptionRaisedBy(const std::function<void()>& work);
