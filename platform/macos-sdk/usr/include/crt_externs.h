#pragma once

#include <sys/cdefs.h>

__BEGIN_DECLS
int* _NSGetArgc(void);
char*** _NSGetArgv(void);
char*** _NSGetEnviron(void);
__END_DECLS
