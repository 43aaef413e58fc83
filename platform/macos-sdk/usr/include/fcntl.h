#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

#define O_RDONLY 0
#define O_WRONLY 1
#define O_RDWR 2
#define O_APPEND 0x00000008
#define O_CREAT 0x00000200
#define O_CLOEXEC 0x01000000
#define F_GETFD 1
#define F_SETFD 2
#define FD_CLOEXEC 1

__BEGIN_DECLS
int fcntl(int, int, ...);
int open(const char*, int, ...);
__END_DECLS
