// Stands for usr/include/sched.h of the SDK: what POSIX names there.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

int sched_yield(void);

#ifdef __cplusplus
}
#endif
