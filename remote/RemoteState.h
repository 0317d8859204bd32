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

  void setGain(float gain, std::string bundleID) override;
  void toggleMute(std::string bundleID) override;
  void setRouting(std::optional<std::string> deviceUID, std::string bundleID) override;
  void setMasterGain(float gain) override;
  void completeOnboarding() override;
  void setOutputDeviceUID(std::optional<std::string> deviceUID) override;
  void setDuckRule(DuckRule rule) override;
  void setFocusCandidateBundleIDs(std::set<std::string> bundleIDs) override;
  void setPauseOnHeadphoneDisconnect(bool pauses) override;
  void setPomodoroFocusMinutes(int minutes) override;
  void setPomodoroBreakMinutes(int minutes) override;
  void setPomodoroFocusBundleID(std::optional<std::string> bundleID) override;
  void addProfile(std::string name) override;
  void deleteProfile(Uuid id) override;
  void updateProfile(Profile profile) override;
  void duplicateProfile(Uuid id) override;
  void applyProfile(Uuid id) override;
  void toggleWhisperMode() override;
  void startSleepTimer(int minutes) override;
  void cancelSleepTimer() override;
  void startPomodoroFocus() override;
  void cancelPomodoro(bool silently) override;
  void skipPomodoroToBreak() override;
  void skipPomodoroToIdle() override;

 private:
  void takeField(const std::string& name, const nlohmann::json& value);
  void setField(const std::string& name, const nlohmann::json& value);
  void notePerformed();
  [[nodiscard]] bool isHeldBack(const std::string& name) const;

  template <typename... Arguments>
  void call(const char* name, const Arguments&... arguments);

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
