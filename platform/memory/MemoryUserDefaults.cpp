// A map and a list of what was done to it.
#include "platform/memory/MemoryUserDefaults.h"

#include <algorithm>
#include <utility>

namespace quillmere {

std::optional<DefaultsValue> MemoryUserDefaults::object(std::string_view key) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

void MemoryUserDefaults::set(std::string_view key, DefaultsValue value) {
  writes_.push_back({std::string(key), value});
  values_.insert_or_assign(std::string(key), std::move(value));
}

void MemoryUserDefaults::remove(std::string_view key) {
  writes_.push_back({std::string(key), std::nullopt});
  if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
}

int MemoryUserDefaults::writeCount(std::string_view key) const {
  return static_cast<int>(
      std::count_if(writes_.begin(), writes_.end(), [key](const Write& write) { return write.key == key; }));
}

}  // namespace quillmere
