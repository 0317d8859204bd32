#include "Listeners.h"

#include <algorithm>
#include <set>
#include <utility>

namespace quillmere::pipewire {

struct Listeners::State {
  struct Entry {
    AudioObjectID object;
    PropertyAddress address;
    PropertyListener listener;
  };
  std::mutex mutex;
  std::vector<Entry> entries;
  std::set<PropertyChange> waiting;

  void deliver() {
    std::vector<Entry> due;
    {
      const std::lock_guard lock(mutex);
      for (const auto& entry : entries) {
        if (waiting.contains({entry.object, entry.address.selector})) due.push_back(entry);
      }
      waiting.clear();
    }
    for (const auto& entry : due) {
      if (isThere(entry)) (*entry.listener)();
    }
  }
  bool isThere(const Entry& wanted) {
    const std::lock_guard lock(mutex);
    return std::any_of(entries.begin(), entries.end(), [&](const Entry& entry) {
      return entry.listener == wanted.listener && entry.object == wanted.object && entry.address == wanted.address;
    });
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
  state_->entries.push_back({object, address, std::move(listener)});
}

void Listeners::remove(AudioObjectID object, const PropertyAddress& address, const PropertyListener& listener) {
  const std::lock_guard lock(state_->mutex);
  const auto found = std::find_if(state_->entries.begin(), state_->entries.end(), [&](const auto& entry) {
    return entry.listener == listener && entry.object == object && entry.address == address;
  });
  if (found != state_->entries.end()) state_->entries.erase(found);
}

void Listeners::tell(std::span<const PropertyChange> changes) {
  {
    const std::lock_guard lock(state_->mutex);
    bool isNews = false;
    for (const auto& change : changes) {
      const bool isAwaited = std::any_of(state_->entries.begin(), state_->entries.end(), [&](const auto& entry) {
        return entry.object == change.object && entry.address.selector == change.selector;
      });
      if (isAwaited) isNews = state_->waiting.insert(change).second || isNews;
    }
    if (!isNews) return;
  }
  main_.post([state = state_] { state->deliver(); });
}

}  // namespace quillmere::pipewire
