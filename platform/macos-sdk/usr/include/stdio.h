#pragma once

#include <stdarg.h>
#include <sys/cdefs.h>
#include <sys/types.h>

#define EOF (-1)
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2

typedef struct __sFILE FILE;

extern FILE* __stderrp;
#define stderr __stderrp

__BEGIN_DECLS
int fclose(FILE*);
int fflush(FILE*);
int fprintf(FILE*, const char*, ...) __attribute__((format(printf, 2, 3)));
FILE* fdopen(int, const char*);
FILE* fopen(const char*, const char*);
size_t fread(void*, size_t, size_t, FILE*);
int fseek(FILE*, long, int);
int fseeko(FILE*, off_t, int);
off_t ftello(FILE*);
size_t fwrite(const void*, size_t, size_t, FILE*);
int printf(const char*, ...) __attribute__((format(printf, 1, 2)));
int remove(const char*);
int snprintf(char*, size_t, const char*, ...) __attribute__((format(printf, 3, 4)));
int sscanf(const char*, const char*, ...) __attribute__((format(scanf, 2, 3)));
int vsnprintf(char*, size_t, const char*, va_list) __attribute__((format(printf, 3, 0)));
__END_DECLS
