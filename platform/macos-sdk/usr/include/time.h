#pragma once

#include <sys/cdefs.h>
#include <sys/types.h>

struct timespec {
  time_t tv_sec;
  long tv_nsec;
};
struct tm {
  int tm_sec, tm_min, tm_hour, tm_mday, tm_mon, tm_year, tm_wday, tm_yday, tm_isdst;
  long tm_gmtoff;
  char* tm_zone;
};

__BEGIN_DECLS
struct tm* gmtime_r(const time_t*, struct tm*);
struct tm* localtime_r(const time_t*, struct tm*);
int nanosleep(const struct timespec*, struct timespec*);
time_t time(time_t*);
__END_DECLS
