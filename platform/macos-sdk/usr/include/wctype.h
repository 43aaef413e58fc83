#pragma once

#include <wchar.h>

__BEGIN_DECLS
wint_t towlower(wint_t);
__END_DECLS
