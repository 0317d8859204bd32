// One record for the process.
#include "runtime/HostThreads.h"

namespace quillmere {

namespace {
HostThreads installed;
}  // namespace

void installHostThreads(const HostThreads& threads) { installed = threads; }

const HostThreads& hostThreads() { return installed; }

}  // namespace quillmere
