// The mixer as views and menus know it: fields to observe, and operations. Who stands behind it may be in this process
// or in another.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/AudioApp.h"
#include "core/Date.h"
#include "core/DuckRule.h"
#include "core/Profile.h"
#include "core/Uuid.h"
#include "engine/AudioOutputDevice.h"
#include "integrations/BrowserTab.h"
#include "integrations/NowPlayingTrack.h"
#include "runtime/Observable.h"
#include "state/PomodoroPhase.h"

namespace quillmere {

/// [main] throughout. Gains are linear, 0 to 1 by convention; nothing is clamped here, the engine clamps. Operations
/// return nothing and fail silently: an unknown identifier is ignored. They take texts and ids by value, because what
/// names an application may be the very element of a field that goes while the operation changes the field.
class MixerState {
 public:
  virtual ~MixerState() = default;
  MixerState(const MixerState&) = delete;
  MixerState& operator=(const MixerState&) = delete;

  /// Calls `visit(name, field)` for each of the fields below, with the field's name.
  template <typename Visitor>
  void visitFields(Visitor visit) const {
    visitEach(*this, visit);
  }

  // Fields, to be read and observed. ------------------------------------------------------------------------------

  /// The applications in the mixer, in display order.
  [[nodiscard]] const Observable<std::vector<AudioApp>>& apps() const { return apps_; }
  [[nodiscard]] const Observable<std::vector<Profile>>& profiles() const { return profiles_; }
  /// The profile applied last; may name one that is gone.
  [[nodiscard]] const Observable<std::optional<Uuid>>& activeProfileID() const { return activeProfileID_; }
  /// Volume of the output device.
  [[nodiscard]] const Observable<float>& masterGain() const { return masterGain_; }
  /// The output device the user chose; not a mirror of the system default.
  [[nodiscard]] const Observable<std::optional<std::string>>& outputDeviceUID() const { return outputDeviceUID_; }
  /// Applications that made sound within the last 1.5 seconds.
  [[nodiscard]] const Observable<std::set<std::string>>& liveBundleIDs() const { return liveBundleIDs_; }
  /// Applications that use the microphone now.
  [[nodiscard]] const Observable<std::set<std::string>>& micBundleIDs() const { return micBundleIDs_; }
  [[nodiscard]] const Observable<bool>& isDucking() const { return isDucking_; }
  /// Applications that Auto-Duck holds down now; not the rule's candidates.
  [[nodiscard]] const Observable<std::set<std::string>>& duckedBundleIDs() const { return duckedBundleIDs_; }
  [[nodiscard]] const Observable<bool>& hasCompletedOnboarding() const { return hasCompletedOnboarding_; }
  [[nodiscard]] const Observable<DuckRule>& duckRule() const { return duckRule_; }
  /// The default device first, then by name.
  [[nodiscard]] const Observable<std::vector<AudioOutputDevice>>& outputDevices() const { return outputDevices_; }
  /// Open tabs by browser.
  [[nodiscard]] const Observable<std::map<std::string, std::vector<BrowserTab>>>& browserTabs() const {
    return browserTabs_;
  }
  [[nodiscard]] const Observable<bool>& isWhisperMode() const { return isWhisperMode_; }
  [[nodiscard]] const Observable<float>& whisperLevel() const { return whisperLevel_; }
  [[nodiscard]] const Observable<std::optional<NowPlayingTrack>>& nowPlaying() const { return nowPlaying_; }
  /// Wall-clock end of the running sleep timer.
  [[nodiscard]] const Observable<std::optional<Date>>& sleepTimerEndsAt() const { return sleepTimerEndsAt_; }
  [[nodiscard]] const Observable<PomodoroPhase>& pomodoroPhase() const { return pomodoroPhase_; }
  [[nodiscard]] const Observable<int>& pomodoroFocusMinutes() const { return pomodoroFocusMinutes_; }
  [[nodiscard]] const Observable<int>& pomodoroBreakMinutes() const { return pomodoroBreakMinutes_; }
  /// The application that stays audible during focus.
  [[nodiscard]] const Observable<std::optional<std::string>>& pomodoroFocusBundleID() const {
    return pomodoroFocusBundleID_;
  }
  /// Applications offered for focus.
  [[nodiscard]] const Observable<std::set<std::string>>& focusCandidateBundleIDs() const {
    return focusCandidateBundleIDs_;
  }
  [[nodiscard]] const Observable<bool>& pauseOnHeadphoneDisconnect() const { return pauseOnHeadphoneDisconnect_; }

  // Mixer. ---------------------------------------------------------------------------------------------------------

  /// Leaves the mute flag alone: moving the level of a muted application makes it audible at once.
  virtual void setGain(float gain, std::string bundleID) = 0;
  /// Unmuting sends exactly 1.0 to the engine, whatever the application's gain.
  virtual void toggleMute(std::string bundleID) = 0;
  /// An absent device follows the system default.
  virtual void setRouting(std::optional<std::string> deviceUID, std::string bundleID) = 0;
  /// Also sets the hardware volume, at once.
  virtual void setMasterGain(float gain) = 0;
  virtual void completeOnboarding() = 0;

  // Fields that views assign. -------------------------------------------------------------------------------------

  /// A present UID makes that device the system default; an absent one only forgets the choice.
  virtual void setOutputDeviceUID(std::optional<std::string> deviceUID) = 0;
  /// Takes effect at the next change of the applications on the microphone.
  virtual void setDuckRule(DuckRule rule) = 0;
  virtual void setFocusCandidateBundleIDs(std::set<std::string> bundleIDs) = 0;
  virtual void setPauseOnHeadphoneDisconnect(bool pauses) = 0;
  virtual void setPomodoroFocusMinutes(int minutes) = 0;
  virtual void setPomodoroBreakMinutes(int minutes) = 0;
  virtual void setPomodoroFocusBundleID(std::optional<std::string> bundleID) = 0;

  // Profiles. ------------------------------------------------------------------------------------------------------

  /// Saves the present list under a name; does not make it active.
  virtual void addProfile(std::string name) = 0;
  virtual void deleteProfile(Uuid id) = 0;
  /// Replaces the profile of the same id; its `updatedAt` becomes now.
  virtual void updateProfile(Profile profile) = 0;
  virtual void duplicateProfile(Uuid id) = 0;
  /// Only the gains reach the engine; mutes and routes change in the list alone.
  virtual void applyProfile(Uuid id) = 0;

  // Automations. ---------------------------------------------------------------------------------------------------

  virtual void toggleWhisperMode() = 0;
  virtual void startSleepTimer(int minutes) = 0;
  /// Leaves the master where the fade had brought it.
  virtual void cancelSleepTimer() = 0;
  virtual void startPomodoroFocus() = 0;
  /// Silently: without giving the gains back.
  virtual void cancelPomodoro(bool silently) = 0;
  /// Ends the focus at the next tick; nothing outside focus.
  virtual void skipPomodoroToBreak() = 0;
  /// Ends the break at the next tick; nothing outside the break.
  virtual void skipPomodoroToIdle() = 0;

 protected:
  MixerState() = default;

  template <typename Visitor>
  void visitOwnFields(Visitor visit) {
    visitEach(*this, visit);
  }

  Observable<std::vector<AudioApp>> apps_;
  Observable<std::vector<Profile>> profiles_;
  Observable<std::optional<Uuid>> activeProfileID_;
  Observable<float> masterGain_;
  Observable<std::optional<std::string>> outputDeviceUID_;
  Observable<std::set<std::string>> liveBundleIDs_;
  Observable<std::set<std::string>> micBundleIDs_;
  Observable<bool> isDucking_{false};
  Observable<std::set<std::string>> duckedBundleIDs_;
  Observable<bool> hasCompletedOnboarding_{false};
  Observable<DuckRule> duckRule_;
  Observable<std::vector<AudioOutputDevice>> outputDevices_;
  Observable<std::map<std::string, std::vector<BrowserTab>>> browserTabs_;
  Observable<bool> isWhisperMode_{false};
  Observable<float> whisperLevel_{0.1F};
  Observable<std::optional<NowPlayingTrack>> nowPlaying_;
  Observable<std::optional<Date>> sleepTimerEndsAt_;
  Observable<PomodoroPhase> pomodoroPhase_;
  Observable<int> pomodoroFocusMinutes_{25};
  Observable<int> pomodoroBreakMinutes_{5};
  Observable<std::optional<std::string>> pomodoroFocusBundleID_;
  Observable<std::set<std::string>> focusCandidateBundleIDs_;
  Observable<bool> pauseOnHeadphoneDisconnect_{true};

 private:
  template <typename Self, typename Visitor>
  static void visitEach(Self& self, Visitor& visit) {
    visit("apps", self.apps_);
    visit("profiles", self.profiles_);
    visit("activeProfileID", self.activeProfileID_);
    visit("masterGain", self.masterGain_);
    visit("outputDeviceUID", self.outputDeviceUID_);
    visit("liveBundleIDs", self.liveBundleIDs_);
    visit("micBundleIDs", self.micBundleIDs_);
    visit("isDucking", self.isDucking_);
    visit("duckedBundleIDs", self.duckedBundleIDs_);
    visit("hasCompletedOnboarding", self.hasCompletedOnboarding_);
    visit("duckRule", self.duckRule_);
    visit("outputDevices", self.outputDevices_);
    visit("browserTabs", self.browserTabs_);
    visit("isWhisperMode", self.isWhisperMode_);
    visit("whisperLevel", self.whisperLevel_);
    visit("nowPlaying", self.nowPlaying_);
    visit("sleepTimerEndsAt", self.sleepTimerEndsAt_);
    visit("pomodoroPhase", self.pomodoroPhase_);
    visit("pomodoroFocusMinutes", self.pomodoroFocusMinutes_);
    visit("pomodoroBreakMinutes", self.pomodoroBreakMinutes_);
    visit("pomodoroFocusBundleID", self.pomodoroFocusBundleID_);
    visit("focusCandidateBundleIDs", self.focusCandidateBundleIDs_);
    visit("pauseOnHeadphoneDisconnect", self.pauseOnHeadphoneDisconnect_);
  }
};

}  // namespace quillmere
