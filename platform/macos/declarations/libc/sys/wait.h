// Stands for usr/include/sys/wait.h of the SDK: what POSIX names there, as far as the tests' library asks.
#pragma once

#include <sys/types.h>

#define WIFEXITED(status) (((status) & 0177) == 0)
#define WEXITSTATUS(status) (((status) >> 8) & 0xff)
#define WIFSIGNALED(status) (((status) & 0177) != 0 && ((status) & 0177) != 0177)
#define WTERMSIG(status) ((status) & 0177)
#define WNOHANG 1
#ifdef __cplusplus
extern "C" {
#endif

pid_t wait(int*);
pid_t waitpid(pid_t, int*, int);

#ifdef __cplusplus
}
#endif
