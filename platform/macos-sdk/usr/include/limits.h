#pragma once

// The compiler's own header has the limits of its types.
#define PATH_MAX 1024
