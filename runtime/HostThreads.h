// What a host does for the program's threads that the language's library can't.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace quillmere {

class ParkingLot;
class ThreadAlarm;

/// What is left null is done without.
struct HostThreads {
  /// A place to wait that wakes fewer threads than a condition variable.
  std::unique_ptr<ParkingLot> (*makeParkingLot)() = nullptr;
  /// Lets a pool keep one thread while it is idle, and bring others when that one is held up.
  std::unique_ptr<ThreadAlarm> (*makeAlarm)(std::function<void()> ring) = nullptr;
  /// Names the calling thread, for debuggers, and for a host that cares for some threads more than for others; names
  /// may be of any length.
  void (*nameThread)(const std::string& name) = nullptr;
};

/// Once, before the first executor and the first queue are made. [main]
void installHostThreads(const HostThreads& threads);

/// [any]
[[nodiscard]] const HostThreads& hostThreads();

}  // namespace quillmere
