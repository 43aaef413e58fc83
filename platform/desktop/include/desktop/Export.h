#pragma once

/// Marks what the library exports.
#define DESKTOP_EXPORT __attribute__((visibility("default")))
