#pragma once

#include <stdarg.h>
#include <sys/cdefs.h>
#include <sys/types.h>

#define EOF (-1)
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2

typedef struct __sFILE FILE;

#define stderr __stderrp
#define stdin __stdinp
#define stdout __stdoutp

__BEGIN_DECLS
extern FILE* __stderrp;
extern FILE* __stdinp;
extern FILE* __stdoutp;
int fclose(FILE*);
int fflush(FILE*);
FILE* fdopen(int, const char*);
int fileno(FILE*);
FILE* fopen(const char*, const char*);
int fprintf(FILE*, const char*, ...) __attribute__((format(printf, 2, 3)));
int fputc(int, FILE*);
int fputs(const char*, FILE*);
size_t fread(void*, size_t, size_t, FILE*);
FILE* freopen(const char*, const char*, FILE*);
int fseek(FILE*, long, int);
int fseeko(FILE*, off_t, int);
long ftell(FILE*);
off_t ftello(FILE*);
size_t fwrite(const void*, size_t, size_t, FILE*);
int printf(const char*, ...) __attribute__((format(printf, 1, 2)));
int putchar(int);
int puts(const char*);
int remove(const char*);
int snprintf(char*, size_t, const char*, ...) __attribute__((format(printf, 3, 4)));
int sscanf(const char*, const char*, ...) __attribute__((format(scanf, 2, 3)));
int vprintf(const char*, va_list) __attribute__((format(printf, 1, 0)));
int vsnprintf(char*, size_t, const char*, va_list) __attribute__((format(printf, 3, 0)));
__END_DECLS
