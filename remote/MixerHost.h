// The mixer's end of a state in another process: tells every change of a field, and performs the calls.
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>
#include <vector>

#include "remote/SendMessage.h"
#include "runtime/Observable.h"
#include "runtime/Runtime.h"

namespace quillmere {

class MixerState;

/// [main] throughout. Everything but `send` outlives it.
class MixerHost {
 public:
  /// Whether what was sent has to wait for the other process.
  using IsBehind = std::function<bool()>;

  /// Sends all fields at once, and from then on what changes. To a process that is behind nothing more is sent: of each
  /// field that changes meanwhile it gets the last value, with catchUp().
  MixerHost(MixerState& state, const Runtime& runtime, SendMessage send, IsBehind isBehind);
  ~MixerHost();

  /// True if the message was for it; what can't be read is logged and ignored.
  bool take(const nlohmann::json& message);
  /// The process has taken what had to wait.
  void catchUp();

 private:
  template <typename T>
  void tell(const char* name, const T& value);
  void tellPerformed();
  void call(const nlohmann::json& message);

  MixerState& state_;
  Runtime runtime_;
  SendMessage send_;
  IsBehind isBehind_;
  /// What the process has not been told, being behind: fields by their names, and calls that have been performed.
  std::set<std::string, std::less<>> untold_;
  std::uint64_t untoldPerformed_ = 0;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
