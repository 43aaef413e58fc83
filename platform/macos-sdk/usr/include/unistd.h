#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

#define STDERR_FILENO 2
#define STDOUT_FILENO 1

__BEGIN_DECLS
void _exit(int) __attribute__((noreturn));
int chdir(const char*);
int close(int);
int dup(int);
int dup2(int, int);
int execv(const char*, char* const*);
pid_t fork(void);
char* getcwd(char*, size_t);
pid_t getpid(void);
int isatty(int);
int pipe(int[2]);
ssize_t read(int, void*, size_t);
int rmdir(const char*);
pid_t setsid(void);
int unlink(const char*);
int usleep(useconds_t);
ssize_t write(int, const void*, size_t);
__END_DECLS
