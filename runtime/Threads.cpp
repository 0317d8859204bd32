// The end of a process whose program is wrong.
#include "runtime/Threads.h"

#include <cstdio>
#include <cstdlib>

namespace quillmere {

void preconditionFailure(const char* message) {
  std::fprintf(stderr, "quillmere: precondition failed: %s\n", message);
  std::fflush(stderr);
  std::abort();
}

}  // namespace quillmere
