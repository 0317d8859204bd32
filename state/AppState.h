// The centre of the program: everything the views show, and the only way from a gesture to the store and the engine.
// The implementation is split by subject: one file a story, AppState+<Subject>.cpp.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
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
#include "platform/Machine.h"
#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "runtime/Task.h"
#include "state/PomodoroPhase.h"

namespace quillmere {

class AudioAppDetector;
class DriverClient;
class EngineCalls;
class HeadphoneMonitor;
class NowPlayingMonitor;
class OrderedBackground;
class OutputDeviceMonitor;
class SettingsStore;
class SystemMasterVolume;

/// [main] throughout. Gains are linear, 0 to 1 by convention; nothing is clamped here, the engine clamps. Operations
/// return nothing and fail silently: an unknown identifier is ignored. Within an operation memory changes first, then
/// the store, then the engine.
class AppState : public std::enable_shared_from_this<AppState> {
 public:
  /// Loads the settings, reads the hardware volume, starts the monitors. The running streams keep the state alive;
  /// `machine`, the runtime's services, `driver` and its engine outlive it.
  static std::shared_ptr<AppState> create(Machine& machine, const Runtime& runtime, DriverClient& driver);
  /// The same over any answer to the engine's calls.
  static std::shared_ptr<AppState> create(Machine& machine, const Runtime& runtime,
                                          std::shared_ptr<EngineCalls> engine);
  ~AppState();
  AppState(const AppState&) = delete;
  AppState& operator=(const AppState&) = delete;

  /// The process-wide instance; stops the process if none was installed.
  static AppState& shared();
  /// Called once, where the program is put together; absent uninstalls.
  static void installShared(std::shared_ptr<AppState> state);

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
  void setGain(float gain, const std::string& bundleID);
  /// Unmuting sends exactly 1.0 to the engine, whatever the application's gain.
  void toggleMute(const std::string& bundleID);
  /// An absent device follows the system default.
  void setRouting(const std::optional<std::string>& deviceUID, const std::string& bundleID);
  /// Also sets the hardware volume, at once.
  void setMasterGain(float gain);
  void completeOnboarding();

  // Fields that views assign. -------------------------------------------------------------------------------------

  /// A present UID makes that device the system default; an absent one only forgets the choice.
  void setOutputDeviceUID(const std::optional<std::string>& deviceUID);
  /// Takes effect at the next change of the applications on the microphone.
  void setDuckRule(DuckRule rule);
  void setFocusCandidateBundleIDs(std::set<std::string> bundleIDs);
  void setPauseOnHeadphoneDisconnect(bool pauses);
  void setPomodoroFocusMinutes(int minutes);
  void setPomodoroBreakMinutes(int minutes);
  void setPomodoroFocusBundleID(std::optional<std::string> bundleID);

  // Profiles. ------------------------------------------------------------------------------------------------------

  /// Saves the present list under a name; does not make it active.
  void addProfile(const std::string& name);
  void deleteProfile(const Uuid& id);
  /// Replaces the profile of the same id; its `updatedAt` becomes now.
  void updateProfile(Profile profile);
  void duplicateProfile(const Uuid& id);
  /// Only the gains reach the engine; mutes and routes change in the list alone.
  void applyProfile(const Uuid& id);

  // Automations. ---------------------------------------------------------------------------------------------------

  void toggleWhisperMode();
  void startSleepTimer(int minutes);
  /// Leaves the master where the fade had brought it.
  void cancelSleepTimer();
  void startPomodoroFocus();
  /// Silently: without giving the gains back.
  void cancelPomodoro(bool silently);
  /// Ends the focus at the next tick; nothing outside focus.
  void skipPomodoroToBreak();
  /// Ends the break at the next tick; nothing outside the break.
  void skipPomodoroToIdle();

 private:
  AppState(Machine& machine, const Runtime& runtime, std::shared_ptr<EngineCalls> engine);

  // AppState.cpp
  void startUp();

  // AppState+Streams.cpp
  void startStreams();
  void startDetectionStream();
  void startLevelStream();
  void startOutputDeviceStream();
  void startNowPlayingStream();

  // AppState+AppList.cpp
  /// `toRestore` receives the stored settings that the engine has not had in this run.
  std::vector<AudioApp> mergeKeepingState(const std::vector<AudioApp>& detected, std::vector<AudioApp>& toRestore);
  void restoreEngineState(const AudioApp& stored);
  void noteSounding(const std::set<std::string>& sounding);
  void takeMicrophoneUsers(const std::set<std::string>& bundleIDs);

  // AppState+Mixer.cpp
  /// Changes the first application of this identifier in the list; false if there is none.
  bool changeApp(const std::string& bundleID, const std::function<void(AudioApp&)>& change);
  /// Starts a background task that sends the gain. Tasks reach the engine in the order of their start.
  void sendGain(float gain, const std::string& bundleID);
  /// Puts saved gains back, in the list and in the engine, for those applications that are in the list.
  void restoreGains(const std::map<std::string, float>& saved);
  void storeMasterGain();
  void followDefaultOutput();

  // AppState+AutoDuck.cpp
  void evaluateDucking();
  void beginDucking();
  void endDucking();
  void restoreDuckedApp(const std::string& bundleID);

  // AppState+Pomodoro.cpp
  void engageFocusAudio();
  void restoreFromFocusAudio();
  void runPomodoroTicker();

  // AppState+DeviceLoss.cpp
  void startHeadphoneMonitor();
  void deviceRemoved(const std::string& deviceUID);
  void deviceAdded(const std::string& deviceUID);
  void pauseForDeviceRemoval(const std::optional<std::string>& deviceUID);

  Machine& machine_;
  Runtime runtime_;

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
  std::map<std::string, float> preWhisperGains_;
  float preWhisperMaster_ = 0.7F;
  std::map<std::string, Date> lastSeenLive_;
  Observable<float> whisperLevel_{0.1F};
  Observable<std::optional<NowPlayingTrack>> nowPlaying_;
  Observable<std::optional<Date>> sleepTimerEndsAt_;
  float sleepTimerStartMaster_ = 0.0F;
  std::optional<Date> sleepTimerStartedAt_;
  Task sleepTimerTicker_;
  Observable<PomodoroPhase> pomodoroPhase_;
  Observable<int> pomodoroFocusMinutes_{25};
  Observable<int> pomodoroBreakMinutes_{5};
  Observable<std::optional<std::string>> pomodoroFocusBundleID_;
  Observable<std::set<std::string>> focusCandidateBundleIDs_;
  std::map<std::string, float> preFocusGains_;
  Task pomodoroTicker_;
  Observable<bool> pauseOnHeadphoneDisconnect_{true};

  std::shared_ptr<HeadphoneMonitor> headphoneMonitor_;
  std::shared_ptr<NowPlayingMonitor> nowPlayingMonitor_;
  std::shared_ptr<AudioAppDetector> detector_;
  std::shared_ptr<EngineCalls> engine_;
  std::shared_ptr<OrderedBackground> engineTasks_;
  std::shared_ptr<SettingsStore> store_;
  std::shared_ptr<OutputDeviceMonitor> deviceMonitor_;
  std::shared_ptr<SystemMasterVolume> systemMaster_;

  std::map<std::string, float> preDuckGains_;
  /// The rule's target for engine tasks that are still to run: they send what stands when they run.
  std::shared_ptr<std::atomic<float>> duckTargetGain_;
  Task restoreTask_;
  /// Settings of earlier runs, as loaded; frozen from then on.
  std::map<std::string, AudioApp> persistedApps_;
  /// Applications whose settings of earlier runs the engine has received.
  std::set<std::string> restoredEngineState_;
  std::optional<std::string> pendingResumeDeviceUID_;
};

}  // namespace quillmere
