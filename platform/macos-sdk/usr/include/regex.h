#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

typedef struct {
  int re_magic;
  size_t re_nsub;
  const char* re_endp;
  struct re_guts* re_g;
} regex_t;
typedef struct {
  off_t rm_so, rm_eo;
} regmatch_t;

#define REG_EXTENDED 1

__BEGIN_DECLS
int regcomp(regex_t*, const char*, int);
int regexec(const regex_t*, const char*, size_t, regmatch_t*, int);
void regfree(regex_t*);
__END_DECLS
