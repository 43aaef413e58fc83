#pragma once

#include <cstdint>
#include <string>

/// The name of an error code, for example "CoreErrorCodes::kNullPointer" for 0x05000000, or
/// "Unknown error code". For use by any thread.
std::string GetNameForErrorCode(uint32_t code);
