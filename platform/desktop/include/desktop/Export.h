#pragma once

/// Marks a declaration that the library exports.
#define DESKTOP_EXPORT __attribute__((visibility("default")))
