#pragma once

#include <stddef.h>
#include <sys/cdefs.h>

typedef struct {
  long quot, rem;
} ldiv_t;
typedef struct {
  long long quot, rem;
} lldiv_t;

__BEGIN_DECLS
void abort(void) __attribute__((noreturn));
long labs(long);
long long llabs(long long);
ldiv_t ldiv(long, long);
lldiv_t lldiv(long long, long long);
void* malloc(size_t);
void* realloc(void*, size_t);
void free(void*);
int posix_memalign(void**, size_t, size_t);
char* getenv(const char*);
long strtol(const char*, char**, int);
long long strtoll(const char*, char**, int);
unsigned long strtoul(const char*, char**, int);
unsigned long long strtoull(const char*, char**, int);
__END_DECLS
