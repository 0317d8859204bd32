// A file descriptor with an owner.
#pragma once

#include <unistd.h>

#include "runtime/Threads.h"

namespace quillmere {

/// [any]
class Descriptor {
 public:
  /// Takes it over; the process ends where it is none.
  explicit Descriptor(int number) : number_(number) {
    if (number_ < 0) preconditionFailure("no file descriptor is left for threads to wait at");
  }
  ~Descriptor() { close(number_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

}  // namespace quillmere
