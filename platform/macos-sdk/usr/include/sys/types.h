#pragma once

#include <stddef.h>
#include <stdint.h>

typedef long time_t;
typedef long ssize_t;
typedef unsigned long clock_t;
typedef int64_t off_t;
typedef int32_t pid_t;
typedef int32_t suseconds_t;
typedef uint32_t useconds_t;
