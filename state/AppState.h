// The mixer itself, centre of the program: the only way from a gesture to the store and the engine.
// The implementation is split by subject: one file a story, AppState+<Subject>.cpp.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/AudioApp.h"
#include "core/Uuid.h"
#include "platform/Machine.h"
#include "runtime/Runtime.h"
#include "runtime/Task.h"
#include "state/MixerState.h"

namespace quillmere {

class AudioAppDetector;
class BrowserTabActivator;
class BrowserTabMonitor;
class DriverClient;
class EngineCalls;
class HeadphoneMonitor;
class NowPlayingMonitor;
class OrderedBackground;
class OutputDeviceMonitor;
class SettingsStore;
class SystemMasterVolume;
class Updater;

/// [main] throughout. Within an operation memory changes first, then the store, then the engine.
class AppState final : public MixerState, public std::enable_shared_from_this<AppState> {
 public:
  /// Loads the settings, reads the hardware volume, starts the monitors. The running streams keep the state alive;
  /// `machine`, the runtime's services, `driver` and its engine outlive it.
  static std::shared_ptr<AppState> create(Machine& machine, const Runtime& runtime, DriverClient& driver);
  /// The same over any answer to the engine's calls.
  static std::shared_ptr<AppState> create(Machine& machine, const Runtime& runtime,
                                          std::shared_ptr<EngineCalls> engine);
  ~AppState() override;

  /// The process-wide instance; stops the process if none was installed.
  static AppState& shared();
  /// Called once, where the program is put together; absent uninstalls.
  static void installShared(std::shared_ptr<AppState> state);

  // The operations; what each does is told where they are described.
#define OPERATION(name, parameters, arguments) void name parameters override;
#include "state/MixerOperations.def"

  /// Who knows of newer versions of this program; outlives the state.
  void useUpdater(Updater& updater);

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

  // AppState+BrowserCompanions.cpp
  void followBrowserCompanions();

  // AppState+BrowserTabs.cpp
  void startBrowserTabStream();
  [[nodiscard]] Subscription followListedBrowsers(std::function<void()> changed);

  // AppState+AppList.cpp
  /// `toRestore` receives the stored settings that the engine has not had in this run.
  std::vector<AudioApp> mergeKeepingState(const std::vector<AudioApp>& detected, std::vector<AudioApp>& toRestore);
  void restoreEngineState(const AudioApp& stored);
  void noteSounding(const std::set<std::string>& sounding);
  void makeUpForLooksLeftOut();
  /// Whether another look can find nothing else until somebody tells of a change. The next noteSounding() then makes up
  /// for the looks that are left out.
  bool restUntilSoundingChanges(const std::set<std::string>& sounding);
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
  void listenForRefusals();

  // AppState+AutoDuck.cpp
  void evaluateDucking();
  void beginDucking();
  void endDucking();
  void restoreDuckedApp(const std::string& bundleID);

  // AppState+Pomodoro.cpp
  void engageFocusAudio();
  void restoreFromFocusAudio();
  void runPomodoroTicker();

  // AppState+ViewSettings.cpp
  void loadViewSettings();

  // AppState+DeviceLoss.cpp
  void startHeadphoneMonitor();
  void deviceRemoved(const std::string& deviceUID);
  void deviceAdded(const std::string& deviceUID);
  void pauseForDeviceRemoval(const std::optional<std::string>& deviceUID);

  Machine& machine_;
  Runtime runtime_;

  std::map<std::string, float> preWhisperGains_;
  float preWhisperMaster_ = 0.7F;
  std::map<std::string, Date> lastSeenLive_;
  struct RestingLook {
    std::set<std::string> sounding;
    MonotonicTime at;
    WallClockSetting clock;
    std::uint64_t clockSettings;
  };
  /// The last look, where the next one comes only with a change.
  std::optional<RestingLook> restingLook_;
  float sleepTimerStartMaster_ = 0.0F;
  std::optional<Date> sleepTimerStartedAt_;
  Task sleepTimerTicker_;
  std::map<std::string, float> preFocusGains_;
  Task pomodoroTicker_;

  std::shared_ptr<HeadphoneMonitor> headphoneMonitor_;
  std::shared_ptr<NowPlayingMonitor> nowPlayingMonitor_;
  std::shared_ptr<AudioAppDetector> detector_;
  std::shared_ptr<EngineCalls> engine_;
  std::shared_ptr<OrderedBackground> engineTasks_;
  std::shared_ptr<SettingsStore> store_;
  std::shared_ptr<OutputDeviceMonitor> deviceMonitor_;
  std::shared_ptr<SystemMasterVolume> systemMaster_;
  /// Both are null where nobody speaks to browsers.
  std::shared_ptr<BrowserTabMonitor> tabMonitor_;
  std::shared_ptr<BrowserTabActivator> tabActivator_;

  std::map<std::string, float> preDuckGains_;
  /// The rule's target for engine tasks that are still to run: they send what stands when they run.
  std::shared_ptr<std::atomic<float>> duckTargetGain_;
  Task restoreTask_;
  /// Settings of earlier runs, as loaded; frozen from then on.
  std::map<std::string, AudioApp> persistedApps_;
  /// Applications whose settings of earlier runs the engine has received.
  std::set<std::string> restoredEngineState_;
  std::optional<std::string> pendingResumeDeviceUID_;
  /// Has the player looked at once more, at the next second.
  std::function<void()> askForTrack_ = [] {};
  Updater* updater_ = nullptr;
  Subscription updaterWatch_;
};

}  // namespace quillmere
