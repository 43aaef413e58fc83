#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

#define O_RDONLY 0
#define O_RDWR 2
#define F_GETFD 1
#define F_SETFD 2
#define FD_CLOEXEC 1

__BEGIN_DECLS
int fcntl(int, int, ...);
int open(const char*, int, ...);
__END_DECLS
