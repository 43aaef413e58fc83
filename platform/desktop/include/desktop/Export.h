#pragma once

/// Marks what this library shares between the host's process and its plug-in modules.
#define DESKTOP_EXPORT __attribute__((visibility("default")))
