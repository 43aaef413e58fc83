#pragma once

#include <cstdint>

/// Error codes of class number 0, shared by the foundation library and the `Tamberlink` framework.
///
/// A code is an unsigned 32-bit integer, 0 for success: the top byte is the ordinal of the error
/// within its class, the low 24 bits are the class number. Other classes declare their codes as
/// their own members (`GMutex::kMutexDeadlockErr`). Each function documents the codes that it
/// returns.
namespace CoreErrorCodes {

inline constexpr uint32_t kSuccess = 0;
inline constexpr uint32_t kError = 0x01000000;
inline constexpr uint32_t kInvalidParam = 0x04000000;
inline constexpr uint32_t kNullPointer = 0x05000000;
inline constexpr uint32_t kNotFound = 0x07000000;
inline constexpr uint32_t kNotImplemented = 0x08000000;
inline constexpr uint32_t kItemNotHandled = 0x0A000000;
inline constexpr uint32_t kIndexOutOfRange = 0x0C000000;
inline constexpr uint32_t kAlreadyInitialized = 0x12000000;
inline constexpr uint32_t kUnknownError = 0x15000000;

}  // namespace CoreErrorCodes
