#pragma once

#include <sys/cdefs.h>

#define NL_CAT_LOCALE 1

typedef struct __nl_cat_d* nl_catd;

__BEGIN_DECLS
int catclose(nl_catd);
char* catgets(nl_catd, int, int, const char*);
nl_catd catopen(const char*, int);
__END_DECLS
