#pragma once

#include <sys/cdefs.h>

__BEGIN_DECLS
int strcasecmp(const char*, const char*);
__END_DECLS
