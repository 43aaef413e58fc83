#pragma once

#include <cstdint>

/// The codes that the framework answers with: the ordinal within a class in the top byte, the
/// number of the class below. The framework states them for itself, since it shares no source with
/// its callers.
namespace CoreErrorCodes {

constexpr uint32_t kSuccess = 0;
/// A document or a font that the framework doesn't have.
constexpr uint32_t kNotFound = 0x07000000;
/// A text that doesn't fit into the caller's buffer.
constexpr uint32_t kIndexOutOfRange = 0x0C000000;
/// A document that uses restricted fonts.
constexpr uint32_t kAlreadyInitialized = 0x12000000;

}  // namespace CoreErrorCodes

namespace GFile {

/// A project that can't be read.
constexpr uint32_t kOpenFailed = 0x02001004;

}  // namespace GFile
