#pragma once

/* The host maker's settings for compilers, which come before all other headers. The headers here
   need none. */
