// The mixer's end of a state in another process: tells every change of a field, and performs the calls.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "remote/SendMessage.h"
#include "runtime/Observable.h"
#include "runtime/Runtime.h"

namespace quillmere {

class MixerState;

/// [main] throughout. Everything but `send` outlives it.
class MixerHost {
 public:
  /// Sends all fields at once, and from then on what changes.
  MixerHost(MixerState& state, const Runtime& runtime, SendMessage send);
  ~MixerHost();

  /// True if the message was for it; what can't be read is logged and ignored.
  bool take(const nlohmann::json& message);

 private:
  void call(const nlohmann::json& message);

  MixerState& state_;
  Runtime runtime_;
  SendMessage send_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
