// Property listeners and their delivery on the main executor, several changes as one call.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "AudioSnapshot.h"
#include "platform/AudioHardware.h"
#include "runtime/Executor.h"

namespace quillmere::pipewire {

/// [any] throughout.
class Listeners {
 public:
  explicit Listeners(Executor& main);
  ~Listeners();
  Listeners(const Listeners&) = delete;
  Listeners& operator=(const Listeners&) = delete;

  void add(AudioObjectID object, const PropertyAddress& address, PropertyListener listener);
  void remove(AudioObjectID object, const PropertyAddress& address, const PropertyListener& listener);
  /// A listener that is still there when its turn comes is called once on [main], however often its property changed.
  /// [any]
  void tell(std::span<const PropertyChange> changes);

 private:
  struct State;
  Executor& main_;
  /// Outlives us in posted work.
  std::shared_ptr<State> state_;
};

}  // namespace quillmere::pipewire
