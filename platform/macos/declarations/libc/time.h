// Stands for usr/include/time.h of the SDK: what ISO C and POSIX name there.
#pragma once

#include <sys/types.h>

struct timespec {
  time_t tv_sec;
  long tv_nsec;
};
struct tm {
  int tm_sec;
  int tm_min;
  int tm_hour;
  int tm_mday;
  int tm_mon;
  int tm_year;
  int tm_wday;
  int tm_yday;
  int tm_isdst;
  long tm_gmtoff;
  char* tm_zone;
};
typedef enum { CLOCK_REALTIME = 0, CLOCK_MONOTONIC = 6, CLOCK_MONOTONIC_RAW = 4, CLOCK_UPTIME_RAW = 8 } clockid_t;

#define CLOCK_REALTIME CLOCK_REALTIME
#define CLOCK_MONOTONIC CLOCK_MONOTONIC
#define CLOCK_MONOTONIC_RAW CLOCK_MONOTONIC_RAW
#define CLOCK_UPTIME_RAW CLOCK_UPTIME_RAW
#define CLOCKS_PER_SEC ((clock_t)1000000)
#define TIME_UTC 1
#ifdef __cplusplus
extern "C" {
#endif

clock_t clock(void);
double difftime(time_t, time_t);
time_t mktime(struct tm*);
time_t time(time_t*);
int timespec_get(struct timespec*, int);
char* asctime(const struct tm*);
char* ctime(const time_t*);
struct tm* gmtime(const time_t*);
struct tm* gmtime_r(const time_t*, struct tm*);
struct tm* localtime(const time_t*);
struct tm* localtime_r(const time_t*, struct tm*);
size_t strftime(char*, size_t, const char*, const struct tm*);
int nanosleep(const struct timespec*, struct timespec*);
int clock_gettime(clockid_t, struct timespec*);
uint64_t clock_gettime_nsec_np(clockid_t);

#ifdef __cplusplus
}
#endif
