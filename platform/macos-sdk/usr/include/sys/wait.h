#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

#define _WSTATUS(status) ((status)&0177)
#define WIFEXITED(status) (_WSTATUS(status) == 0)
#define WEXITSTATUS(status) (((status) >> 8) & 0xff)
#define WIFSIGNALED(status) (_WSTATUS(status) != 0177 && _WSTATUS(status) != 0)
#define WTERMSIG(status) _WSTATUS(status)

__BEGIN_DECLS
pid_t waitpid(pid_t, int*, int);
__END_DECLS
