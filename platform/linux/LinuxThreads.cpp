// A parking lot of the kernel's, and the names that tools show.
#include "platform/linux/LinuxThreads.h"

#include <pthread.h>

#include "threads/EpollParkingLot.h"
#include "threads/KernelAlarm.h"

namespace quillmere {

namespace {

void nameThread(const std::string& name) {
  // The kernel keeps 15 characters; the end of a dotted label tells more than its start.
  constexpr std::size_t longest = 15;
  pthread_setname_np(pthread_self(), name.substr(name.size() > longest ? name.size() - longest : 0).c_str());
}

}  // namespace

HostThreads linuxThreads() { return {makeEpollParkingLot, makeKernelAlarm, nameThread}; }

}  // namespace quillmere
