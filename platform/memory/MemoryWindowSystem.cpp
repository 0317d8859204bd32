// An in-memory window system.
#include "platform/memory/MemoryWindowSystem.h"

namespace quillmere {

std::vector<WindowInfo> MemoryWindowSystem::windows() const {
  std::vector<WindowInfo> result;
  result.reserve(visible_.size());
  for (const auto& [identifier, isVisible] : visible_) result.push_back({identifier, isVisible});
  return result;
}

void MemoryWindowSystem::open(const std::string& identifier) {
  calls.push_back("open " + identifier);
  if (!openable_.contains(identifier)) return;
  visible_[identifier] = true;
  if (becameKey_) becameKey_(identifier);
}

void MemoryWindowSystem::close(const std::string& identifier) {
  calls.push_back("close " + identifier);
  const auto window = visible_.find(identifier);
  if (window == visible_.end() || !window->second) return;
  if (willClose_) willClose_(identifier);
  window->second = false;
}

void MemoryWindowSystem::orderFront(const std::string& identifier) { calls.push_back("front " + identifier); }

void MemoryWindowSystem::setActivationPolicy(ActivationPolicy policy) {
  policy_ = policy;
  calls.emplace_back(policy == ActivationPolicy::regular ? "policy regular" : "policy accessory");
}

}  // namespace quillmere
