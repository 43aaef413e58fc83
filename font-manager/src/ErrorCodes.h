#pragma once

#include <cstdint>

/// The codes that the framework returns: an ordinal in the top byte, the number of its class below.
/// Its callers have theirs, since they share no source.
namespace CoreErrorCodes {

constexpr uint32_t kSuccess = 0;
/// A document or a font is unknown.
constexpr uint32_t kNotFound = 0x07000000;
/// A text doesn't fit into the caller's buffer.
constexpr uint32_t kIndexOutOfRange = 0x0C000000;
/// A document uses restricted fonts.
constexpr uint32_t kAlreadyInitialized = 0x12000000;

}  // namespace CoreErrorCodes

namespace GFile {

/// A project can't be read.
constexpr uint32_t kOpenFailed = 0x02001004;

}  // namespace GFile
