// A parking lot in the kernel.
#pragma once

#include <memory>

#include "runtime/ParkingLot.h"

namespace quillmere {

/// One epoll set that all threads wait on: an event wakes one of them, the one that came last and is still warm. [any]
[[nodiscard]] std::unique_ptr<ParkingLot> makeEpollParkingLot();

}  // namespace quillmere
