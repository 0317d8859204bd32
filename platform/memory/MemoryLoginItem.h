// A login item that can be refused, and that a user may change behind the program's back.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/LoginItem.h"

namespace quillmere {

/// [any]
class MemoryLoginItem final : public LoginItem {
 public:
  Failure registerItem() override { return change(LoginItemStatus::enabled); }
  Failure unregisterItem() override { return change(LoginItemStatus::notRegistered); }
  [[nodiscard]] LoginItemStatus status() override {
    const std::scoped_lock lock(mutex_);
    ++reads_;
    return status_;
  }

  void setStatus(LoginItemStatus status) {
    const std::scoped_lock lock(mutex_);
    status_ = status;
  }
  /// Every change fails with this text from now on; absent lets them through again.
  void failWith(Failure failure) {
    const std::scoped_lock lock(mutex_);
    failure_ = std::move(failure);
  }
  /// Changes succeed and do nothing, as on a system that wants an approval.
  void ignoreChanges() {
    const std::scoped_lock lock(mutex_);
    ignores_ = true;
  }
  [[nodiscard]] int reads() const {
    const std::scoped_lock lock(mutex_);
    return reads_;
  }

 private:
  Failure change(LoginItemStatus status) {
    const std::scoped_lock lock(mutex_);
    if (failure_) return failure_;
    if (!ignores_) status_ = status;
    return std::nullopt;
  }

  mutable std::mutex mutex_;
  LoginItemStatus status_ = LoginItemStatus::notRegistered;
  Failure failure_;
  bool ignores_ = false;
  int reads_ = 0;
};

}  // namespace quillmere
