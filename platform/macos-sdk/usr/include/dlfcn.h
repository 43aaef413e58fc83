#pragma once

#include <sys/cdefs.h>

#define RTLD_LAZY 1
#define RTLD_NOW 2
#define RTLD_LOCAL 4
#define RTLD_DEFAULT ((void*)-2)

__BEGIN_DECLS
char* dlerror(void);
void* dlopen(const char*, int);
void* dlsym(void*, const char*);
__END_DECLS
