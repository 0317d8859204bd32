// Property listeners and their delivery on the main executor, several changes as one call.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "AudioSnapshot.h"
#include "platform/AudioHardware.h"
#include "runtime/Executor.h"

namespace quillmere::pipewire {

/// Ids of devices come back with the devices, so whoever follows the default output adds to the same properties for as
/// long as the program runs. A listener that is there already therefore takes no further place, and a delivery looks at
/// those alone that it is for.
/// [any] throughout.
class Listeners {
 public:
  explicit Listeners(Executor& main);
  ~Listeners();
  Listeners(const Listeners&) = delete;
  Listeners& operator=(const Listeners&) = delete;

  void add(AudioObjectID object, const PropertyAddress& address, PropertyListener listener);
  void remove(AudioObjectID object, const PropertyAddress& address, const PropertyListener& listener);
  /// A listener that is still there when its turn comes is called once on [main], however often its property changed;
  /// those of one delivery in the order in which they were added.
  void tell(std::span<const PropertyChange> changes);
  /// How many there are.
  [[nodiscard]] std::size_t count() const;

 private:
  struct State;
  Executor& main_;
  /// Outlives us in posted work.
  std::shared_ptr<State> state_;
};

}  // namespace quillmere::pipewire
