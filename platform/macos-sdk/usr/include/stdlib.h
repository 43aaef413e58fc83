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
char* getenv(const char*);
ldiv_t ldiv(long, long);
lldiv_t lldiv(long long, long long);
void* malloc(size_t);
void* realloc(void*, size_t);
void free(void*);
int posix_memalign(void**, size_t, size_t);
__END_DECLS
