// Construction and the order of the start-up; the process-wide instance.
#include "state/AppState.h"

#include <cmath>
#include <utility>

#include "engine/AudioAppDetector.h"
#include "engine/HeadphoneMonitor.h"
#include "engine/OutputDeviceMonitor.h"
#include "engine/SystemMasterVolume.h"
#include "integrations/BrowserTabActivator.h"
#include "integrations/BrowserTabMonitor.h"
#include "integrations/NowPlayingMonitor.h"
#include "runtime/OrderedBackground.h"
#include "runtime/Threads.h"
#include "state/EngineCalls.h"
#include "state/SettingsStore.h"

namespace quillmere {

namespace {

std::shared_ptr<AppState>& sharedState() {
  static std::shared_ptr<AppState> state;
  return state;
}

/// Smaller differences between the shown and the hardware volume are rounding, not news.
constexpr float masterTolerance = 0.001F;

}  // namespace

std::shared_ptr<AppState> AppState::create(Machine& machine, const Runtime& runtime, DriverClient& driver) {
  return create(machine, runtime, engineCallsThrough(driver));
}

std::shared_ptr<AppState> AppState::create(Machine& machine, const Runtime& runtime,
                                           std::shared_ptr<EngineCalls> engine) {
  QUILLMERE_CHECK_ON(runtime.main, "the state is created off the main thread");
  std::shared_ptr<AppState> state(new AppState(machine, runtime, std::move(engine)));
  state->startUp();
  return state;
}

AppState::AppState(Machine& machine, const Runtime& runtime, std::shared_ptr<EngineCalls> engine)
    : machine_(machine),
      runtime_(runtime),
      headphoneMonitor_(std::make_shared<HeadphoneMonitor>(*machine.audio, runtime.main)),
      nowPlayingMonitor_(std::make_shared<NowPlayingMonitor>(*machine.nowPlaying, *machine.workspace, runtime,
                                                             std::chrono::seconds(1))),
      detector_(std::make_shared<AudioAppDetector>(*machine.audio, *machine.workspace, runtime.background)),
      engine_(std::move(engine)),
      engineTasks_(std::make_shared<OrderedBackground>(runtime.background)),
      store_(std::make_shared<SettingsStore>(*machine.defaults, runtime.clocks, runtime.log)),
      deviceMonitor_(std::make_shared<OutputDeviceMonitor>(*machine.audio, runtime.background)),
      systemMaster_(std::make_shared<SystemMasterVolume>(*machine.audio, runtime.main, runtime.log)),
      tabMonitor_(machine.tabScripting ? std::make_shared<BrowserTabMonitor>(*machine.tabScripting, runtime) : nullptr),
      tabActivator_(machine.tabScripting ? std::make_shared<BrowserTabActivator>(*machine.tabScripting, runtime)
                                         : nullptr),
      duckTargetGain_(std::make_shared<std::atomic<float>>(0.0F)) {}

AppState::~AppState() = default;

void AppState::startUp() {
  auto stored = store_->load();

  // Straight into the fields: the stored device must not become the system default, and nothing is written.
  profiles_.set(std::move(stored.profiles));
  activeProfileID_.set(stored.activeProfileID);
  masterGain_.set(stored.masterGain);
  outputDeviceUID_.set(std::move(stored.outputDeviceUID));
  hasCompletedOnboarding_.set(stored.hasCompletedOnboarding);
  duckTargetGain_->store(stored.duckRule.targetGain);
  duckRule_.set(std::move(stored.duckRule));

  // Through the setters: from the first run on both keys exist.
  setPauseOnHeadphoneDisconnect(stored.pauseOnHeadphoneDisconnect);
  setFocusCandidateBundleIDs(std::move(stored.focusCandidateBundleIDs));
  persistedApps_ = std::move(stored.persistedApps);
  loadViewSettings();

  // The stored master shows only where the device has no readable volume.
  if (const auto volume = systemMaster_->read()) masterGain_.set(*volume);
  systemMaster_->onSystemChange = [weak = weak_from_this()](float volume) {
    const auto self = weak.lock();
    if (self && std::abs(*self->masterGain_ - volume) > masterTolerance) self->masterGain_.set(volume);
  };

  listenForRefusals();
  startStreams();
  followBrowserCompanions();
  startHeadphoneMonitor();
}

AppState& AppState::shared() {
  if (!sharedState()) preconditionFailure("the shared state is used before it was installed");
  return *sharedState();
}

void AppState::installShared(std::shared_ptr<AppState> state) { sharedState() = std::move(state); }

}  // namespace quillmere
