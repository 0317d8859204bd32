// A message bus of a test's own: a dbus-daemon that ends with the test.
#pragma once

#include <sys/types.h>
#include <string>

#include "TemporaryFolder.h"

namespace quillmere::support {

class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  [[nodiscard]] const std::string& address() const { return address_; }
  /// Starts the daemon (again), at the same address; the constructor has done so already.
  void start();
  /// Ends the daemon, as a crash would.
  void stop();

 private:
  TemporaryFolder folder_;
  std::string address_;
  pid_t pid_ = 0;
};

}  // namespace quillmere::support
