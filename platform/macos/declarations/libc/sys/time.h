// Stands for usr/include/sys/time.h of the SDK: what POSIX names there.
#pragma once

#include <sys/types.h>
#include <time.h>

struct timeval {
  time_t tv_sec;
  suseconds_t tv_usec;
};
#ifdef __cplusplus
extern "C" {
#endif

int gettimeofday(struct timeval*, void*);

#ifdef __cplusplus
}
#endif
