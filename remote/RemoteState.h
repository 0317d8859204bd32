// The mixer as it is known in another process: fields that follow it, and operations that it is asked for.
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "remote/SendMessage.h"
#include "runtime/HomeThread.h"
#include "runtime/Runtime.h"
#include "state/MixerState.h"

namespace quillmere {

/// [main] throughout. Fields change a moment after the operation, when the mixer says so. Levels and what is assigned
/// change at once, so that the next step of a wheel or the next switch starts from the last one; until the mixer has
/// performed the last call that changed a field, what it says of it is held back, because it may be older.
class RemoteState final : public MixerState {
 public:
  RemoteState(LogSink& log, SendMessage send);
  ~RemoteState() override;

  /// True if the message was for it; what can't be read is logged and ignored.
  bool take(const nlohmann::json& message);

#define OPERATION(name, parameters, arguments) void name parameters override;
#include "state/MixerOperations.def"

 private:
  void takeField(const std::string& name, const nlohmann::json& value);
  void notePerformed();
  /// The call that was sent last has changed the field here already.
  void noteChanged(const void* field);
  /// Sends what it is called with as a call of the operation.
  template <typename... Parameters>
  [[nodiscard]] auto sender(const char* name, void (MixerState::*operation)(Parameters...));

  struct HeldBack;

  HomeThread home_;
  LogSink& log_;
  SendMessage send_;
  /// Calls that were sent, and how many of them the mixer has performed.
  std::uint64_t sent_ = 0;
  std::uint64_t performed_ = 0;
  std::unique_ptr<HeldBack> heldBack_;
};

}  // namespace quillmere
