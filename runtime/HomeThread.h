// The thread that an object lives on, for objects that have no executor to ask for it.
#pragma once

#include <thread>

namespace quillmere {

/// Remembers the thread that made it, and takes an executor's place in QUILLMERE_CHECK_ON. [any]
class HomeThread {
 public:
  [[nodiscard]] bool isCurrent() const { return std::this_thread::get_id() == id_; }

 private:
  std::thread::id id_ = std::this_thread::get_id();
};

}  // namespace quillmere
