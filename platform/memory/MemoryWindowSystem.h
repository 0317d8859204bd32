// An in-memory window system: windows by identifier, and a record of what was asked of it.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/WindowSystem.h"

namespace quillmere {

/// [main] throughout.
class MemoryWindowSystem final : public WindowSystem {
 public:
  explicit MemoryWindowSystem(std::set<std::string> openable) : openable_(std::move(openable)) {}

  [[nodiscard]] std::vector<WindowInfo> windows() const override;
  [[nodiscard]] bool canOpen(const std::string& identifier) const override { return openable_.contains(identifier); }
  void open(const std::string& identifier) override;
  void close(const std::string& identifier) override;
  void orderFront(const std::string& identifier) override;
  [[nodiscard]] ActivationPolicy activationPolicy() const override { return policy_; }
  void setActivationPolicy(ActivationPolicy policy) override;
  void activate() override { calls.emplace_back("activate"); }
  void showAboutPanel(const std::string& /*activationToken*/) override { calls.emplace_back("about"); }
  void terminate() override { calls.emplace_back("terminate"); }
  void onWindowBecameKey(WindowObserver observer) override { becameKey_ = std::move(observer); }
  void onWindowWillClose(WindowObserver observer) override { willClose_ = std::move(observer); }

  /// "open main", "close main", "front main", "activate", "policy regular", "policy accessory", "about", "terminate".
  std::vector<std::string> calls;

 private:
  std::set<std::string> openable_;
  std::map<std::string, bool> visible_;
  ActivationPolicy policy_ = ActivationPolicy::regular;
  WindowObserver becameKey_;
  WindowObserver willClose_;
};

}  // namespace quillmere
