#pragma once

#include <stddef.h>
#include <sys/cdefs.h>

typedef struct {
  long quot, rem;
} ldiv_t;
typedef struct {
  long long quot, rem;
} lldiv_t;

#define EXIT_SUCCESS 0
#define EXIT_FAILURE 1

__BEGIN_DECLS
void abort(void) __attribute__((noreturn));
void exit(int) __attribute__((noreturn));
char* getenv(const char*);
ldiv_t ldiv(long, long);
lldiv_t lldiv(long long, long long);
void* calloc(size_t, size_t);
void* malloc(size_t);
char* mkdtemp(char*);
int mkstemp(char*);
int rand(void);
int setenv(const char*, const char*, int);
void srand(unsigned);
double strtod(const char*, char**);
float strtof(const char*, char**);
long strtol(const char*, char**, int);
long double strtold(const char*, char**);
long long strtoll(const char*, char**, int);
unsigned long strtoul(const char*, char**, int);
unsigned long long strtoull(const char*, char**, int);
int unsetenv(const char*);
void* realloc(void*, size_t);
void free(void*);
int posix_memalign(void**, size_t, size_t);
__END_DECLS
