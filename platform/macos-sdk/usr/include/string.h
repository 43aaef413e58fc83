#pragma once

#include <stddef.h>
#include <sys/cdefs.h>

__BEGIN_DECLS
void* memchr(const void*, int, size_t);
int memcmp(const void*, const void*, size_t);
void* memcpy(void*, const void*, size_t);
void* memmove(void*, const void*, size_t);
void* memset(void*, int, size_t);
char* strchr(const char*, int);
char* strerror(int);
size_t strlcpy(char*, const char*, size_t);
int strcmp(const char*, const char*);
int strcoll(const char*, const char*);
char* strdup(const char*);
size_t strlen(const char*);
int strncmp(const char*, const char*, size_t);
char* strncpy(char*, const char*, size_t);
size_t strnlen(const char*, size_t);
char* strpbrk(const char*, const char*);
char* strrchr(const char*, int);
char* strstr(const char*, const char*);
__END_DECLS
