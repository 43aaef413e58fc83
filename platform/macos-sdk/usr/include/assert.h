#include <sys/cdefs.h>

__BEGIN_DECLS
void __assert_rtn(const char* function, const char* file, int line, const char* condition)
    __attribute__((noreturn, cold));
__END_DECLS

// Anew each time, as it follows NDEBUG.
#undef assert
#ifdef NDEBUG
#define assert(condition) ((void)0)
#else
#define assert(condition) \
  ((condition) ? (void)0 : __assert_rtn(__func__, __FILE__, __LINE__, #condition))
#endif
