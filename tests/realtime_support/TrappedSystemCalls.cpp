#include "TrappedSystemCalls.h"

#include <sys/prctl.h>

#include <csignal>

#ifndef PR_SET_SYSCALL_USER_DISPATCH
#define PR_SET_SYSCALL_USER_DISPATCH 59
#define PR_SYS_DISPATCH_ON 1
#endif

namespace quillmere {
namespace {

enum : char { allow = 0, block = 1 };

/// What the kernel looks at on the way into every system call of this thread.
thread_local volatile char selector = allow;
thread_local volatile int caught = 0;
thread_local volatile int lastCaught = -1;

void note(int, siginfo_t* info, void*) {
  // The way back from here is a system call too.
  selector = allow;
  caught = caught + 1;
  lastCaught = info->si_syscall;
}

}  // namespace

bool TrappedSystemCalls::prepareThread() {
  struct sigaction action{};
  action.sa_sigaction = note;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGSYS, &action, nullptr);
  return prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_ON, 0, 0, &selector) == 0;
}

TrappedSystemCalls::TrappedSystemCalls() { selector = block; }

TrappedSystemCalls::~TrappedSystemCalls() { selector = allow; }

int TrappedSystemCalls::count() { return caught; }

int TrappedSystemCalls::last() { return lastCaught; }

}  // namespace quillmere
