#pragma once

#include <stdint.h>

/* The host's base types, under its own names. C11 and C++. */

typedef char A_char;
typedef unsigned char A_Boolean;
typedef int16_t A_short;
typedef int32_t A_long;
typedef uint32_t A_u_long;
typedef double A_FpLong;
typedef unsigned short A_UTF16Char; /* a unit of UTF-16 */
typedef A_char A_LegacyEnumType;    /* as on macOS */

typedef A_long A_Err;
enum { A_Err_NONE = 0, A_Err_GENERIC = 1 };

/* A function of the host that nothing here calls. It keeps its place in the table. No call of it
   compiles: the type of its argument is never defined. */
struct A_UnknownArguments;
typedef A_Err (*A_UnknownFunction)(struct A_UnknownArguments);
