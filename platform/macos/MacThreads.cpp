// Tells the system of the calling thread.
#include "platform/macos/MacThreads.h"

#include <pthread.h>
#include <pthread/qos.h>

#include "platform/macos/pure/ThreadCare.h"

namespace quillmere {

namespace {

void careFor(const std::string& name) {
  pthread_setname_np(macos::keptName(name).c_str());
  if (macos::urgencyOf(name) == macos::Urgency::interactive) {
    pthread_set_qos_class_self_np(QOS_CLASS_USER_INTERACTIVE, 0);
  }
}

}  // namespace

HostThreads macThreads() {
  HostThreads threads;
  threads.nameThread = careFor;
  return threads;
}

}  // namespace quillmere
