#pragma once

#include <locale.h>
#include <stddef.h>

typedef struct _xlocale* locale_t;

__BEGIN_DECLS
int asprintf_l(char**, locale_t, const char*, ...) __attribute__((format(printf, 3, 4)));
int isdigit_l(int, locale_t);
int isxdigit_l(int, locale_t);
int snprintf_l(char*, size_t, locale_t, const char*, ...) __attribute__((format(printf, 4, 5)));
int sscanf_l(const char*, locale_t, const char*, ...) __attribute__((format(scanf, 3, 4)));
double strtod_l(const char*, char**, locale_t);
float strtof_l(const char*, char**, locale_t);
long double strtold_l(const char*, char**, locale_t);
long long strtoll_l(const char*, char**, int, locale_t);
unsigned long long strtoull_l(const char*, char**, int, locale_t);
__END_DECLS
