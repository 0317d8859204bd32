// A field that tells its observers, on the main thread, when its value has changed. Equal values are not told.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quillmere {

/// Ends an observation when destroyed. May outlive the field.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::shared_ptr<void> token) : token_(std::move(token)) {}
  void cancel() { token_.reset(); }

 private:
  std::shared_ptr<void> token_;
};

/// [main] throughout.
template <typename T>
class Observable {
 public:
  using Observer = std::function<void(const T&)>;

  Observable() = default;
  explicit Observable(T initial) : value_(std::move(initial)) {}
  Observable(const Observable&) = delete;
  Observable& operator=(const Observable&) = delete;

  [[nodiscard]] const T& get() const { return value_; }
  [[nodiscard]] const T& operator*() const { return value_; }
  [[nodiscard]] const T* operator->() const { return &value_; }

  /// Stores the value and tells the observers if it differs; returns whether it did.
  bool set(T value) {
    if (value_ == value) return false;
    value_ = std::move(value);
    notify();
    return true;
  }

  /// Changes the value in place; observers are told if the result differs from what was.
  template <typename Change>
  bool modify(Change&& change) {
    T next = value_;
    std::forward<Change>(change)(next);
    return set(std::move(next));
  }

  /// Called after each change, not for the present value, until the subscription ends.
  [[nodiscard]] Subscription observe(Observer observer) const {
    // Here too: a field that never changes may be observed again and again.
    forgetEnded();
    auto entry = std::make_shared<Observer>(std::move(observer));
    observers_.push_back(entry);
    return Subscription(entry);
  }
  /// Observers that a place is held for: all whose subscription lasts, and those that ended since somebody last
  /// observed or was told.
  [[nodiscard]] std::size_t heldObservers() const { return observers_.size(); }

 private:
  void forgetEnded() const {
    std::erase_if(observers_, [](const auto& weak) { return weak.expired(); });
  }

  void notify() {
    // An observer may subscribe or end subscriptions while it is told; those it ends before their turn are not told.
    forgetEnded();
    const auto snapshot = observers_;
    for (const auto& weak : snapshot) {
      if (const auto observer = weak.lock()) (*observer)(value_);
    }
  }

  T value_{};
  // Observing does not change the field: a reader that may not write may still be told.
  mutable std::vector<std::weak_ptr<Observer>> observers_;
};

}  // namespace quillmere
