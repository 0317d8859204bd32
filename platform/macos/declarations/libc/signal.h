// Stands for usr/include/signal.h of the SDK: what ISO C and POSIX name there.
#pragma once

#include <sys/types.h>

typedef int sig_atomic_t;
typedef uint32_t sigset_t;
struct sigaction {
  void (*sa_handler)(int);
  sigset_t sa_mask;
  int sa_flags;
};

#define SIG_DFL ((void (*)(int))0)
#define SIG_IGN ((void (*)(int))1)
#define SIG_ERR ((void (*)(int)) - 1)
#define SIGHUP 1
#define SIGINT 2
#define SIGQUIT 3
#define SIGILL 4
#define SIGTRAP 5
#define SIGABRT 6
#define SIGFPE 8
#define SIGKILL 9
#define SIGBUS 10
#define SIGSEGV 11
#define SIGPIPE 13
#define SIGALRM 14
#define SIGTERM 15
#define SIGCHLD 20
#define SIGUSR1 30
#define SIGUSR2 31
#define SIG_BLOCK 1
#define SIG_UNBLOCK 2
#define SIG_SETMASK 3
#ifdef __cplusplus
extern "C" {
#endif

void (*signal(int, void (*)(int)))(int);
int raise(int);
int kill(pid_t, int);
int sigaction(int, const struct sigaction*, struct sigaction*);
int sigemptyset(sigset_t*);
int sigaddset(sigset_t*, int);
int pthread_sigmask(int, const sigset_t*, sigset_t*);

#ifdef __cplusplus
}
#endif
