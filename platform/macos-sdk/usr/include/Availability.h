#pragma once

// What a later release of macOS gives up, as in API_DEPRECATED("why", macos(10.6, 14.0)).
#define API_DEPRECATED(why, platform) __attribute__((availability(__API_##platform, message = why)))
#define __API_macos(since, until) macos, introduced = since, deprecated = until
