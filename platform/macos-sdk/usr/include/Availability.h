#pragma once

// API_AVAILABLE(macos(10.6)), API_DEPRECATED("why", macos(10.6, 14.0)): what a release of macOS adds and gives up.
#define __API_macos(...) __API_SELECT(__VA_ARGS__, __API_RANGE, __API_SINCE)(__VA_ARGS__)
#define __API_SELECT(first, second, macro, ...) macro
#define __API_SINCE(since) macos, introduced = since
#define __API_RANGE(since, until) macos, introduced = since, deprecated = until

#define API_AVAILABLE(platform) __attribute__((availability(__API_##platform)))
#define API_DEPRECATED(text, platform) __attribute__((availability(__API_##platform, message = text)))
