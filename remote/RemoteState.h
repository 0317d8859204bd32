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

/// [main] throughout. Fields change a moment after the operation, when the mixer says so. Levels alone change at once,
/// so that the next step of a wheel or a drag starts from the last one; until the mixer has performed all such calls,
/// what it says of the fields they touch is held back, because it may be older.
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
  [[nodiscard]] bool isHeldBack(const void* field) const;
  /// Sends what it is called with as a call of the operation.
  template <typename... Parameters>
  [[nodiscard]] auto sender(const char* name, void (MixerState::*operation)(Parameters...));

  struct HeldBack;

  HomeThread home_;
  LogSink& log_;
  SendMessage send_;
  /// Calls that the mixer has not performed yet; and how many of these were sent up to the last change of a level.
  std::uint64_t sent_ = 0;
  std::uint64_t performed_ = 0;
  std::uint64_t lastLevelCall_ = 0;
  std::unique_ptr<HeldBack> heldBack_;
};

}  // namespace quillmere
