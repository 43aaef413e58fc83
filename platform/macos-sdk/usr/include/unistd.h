#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

__BEGIN_DECLS
char* getcwd(char*, size_t);
pid_t getpid(void);
int usleep(useconds_t);
__END_DECLS
