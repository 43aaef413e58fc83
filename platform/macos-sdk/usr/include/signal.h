#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>
