// The service that starts this program when its user logs in. The truth lives there; nothing is kept here.
#pragma once

#include <optional>
#include <string>

namespace quillmere {

/// The numbers are the platform's own. Only `enabled` means that the program will be started.
enum class LoginItemStatus : int { notRegistered = 0, enabled = 1, requiresApproval = 2, notFound = 3 };

/// [any but main]: files are written, and services asked. One call at a time.
class LoginItem {
 public:
  /// What went wrong, in words for the log; absent for success.
  using Failure = std::optional<std::string>;

  virtual ~LoginItem() = default;
  virtual Failure registerItem() = 0;
  /// Nothing to take away is a success.
  virtual Failure unregisterItem() = 0;
  /// Read from the system each time.
  [[nodiscard]] virtual LoginItemStatus status() = 0;
};

}  // namespace quillmere
