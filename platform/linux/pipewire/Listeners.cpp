#include "Listeners.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

namespace quillmere::pipewire {

namespace {

/// Sorted by property, so that the listeners of one stand side by side.
struct Key {
  PropertyChange property;
  PropertyAddress address;
  PropertyListener listener;

  friend auto operator<=>(const Key&, const Key&) = default;
};

/// Finds a property's listeners among the keys.
struct ByProperty {
  using is_transparent = void;
  bool operator()(const Key& left, const Key& right) const { return left < right; }
  bool operator()(const Key& left, const PropertyChange& right) const { return left.property < right; }
  bool operator()(const PropertyChange& left, const Key& right) const { return left < right.property; }
};

}  // namespace

struct Listeners::State {
  mutable std::mutex mutex;
  /// With the number of the addition: whoever goes and comes again is another one.
  std::map<Key, std::uint64_t, ByProperty> entries;
  std::uint64_t additions = 0;
  std::set<PropertyChange> waiting;

  void deliver() {
    std::vector<std::pair<std::uint64_t, Key>> due;
    {
      const std::lock_guard lock(mutex);
      for (const auto& change : std::exchange(waiting, {})) {
        const auto [first, last] = entries.equal_range(change);
        for (auto entry = first; entry != last; ++entry) due.emplace_back(entry->second, entry->first);
      }
    }
    std::ranges::sort(due, {}, [](const auto& each) { return each.first; });
    for (const auto& [number, key] : due) {
      if (isThere(key, number)) (*key.listener)();
    }
  }
  bool isThere(const Key& key, std::uint64_t number) const {
    const std::lock_guard lock(mutex);
    const auto found = entries.find(key);
    return found != entries.end() && found->second == number;
  }
};

Listeners::Listeners(Executor& main) : main_(main), state_(std::make_shared<State>()) {}

Listeners::~Listeners() {
  const std::lock_guard lock(state_->mutex);
  state_->entries.clear();
}

void Listeners::add(AudioObjectID object, const PropertyAddress& address, PropertyListener listener) {
  if (!listener || !*listener) return;
  const std::lock_guard lock(state_->mutex);
  const auto [entry, isNew] = state_->entries.try_emplace({{object, address.selector}, address, std::move(listener)});
  if (isNew) entry->second = ++state_->additions;
}

void Listeners::remove(AudioObjectID object, const PropertyAddress& address, const PropertyListener& listener) {
  const std::lock_guard lock(state_->mutex);
  state_->entries.erase(Key{{object, address.selector}, address, listener});
}

void Listeners::tell(std::span<const PropertyChange> changes) {
  {
    const std::lock_guard lock(state_->mutex);
    bool isNews = false;
    for (const auto& change : changes) {
      if (state_->entries.contains(change)) isNews = state_->waiting.insert(change).second || isNews;
    }
    if (!isNews) return;
  }
  main_.post([state = state_] { state->deliver(); });
}

std::size_t Listeners::count() const {
  const std::lock_guard lock(state_->mutex);
  return state_->entries.size();
}

}  // namespace quillmere::pipewire
