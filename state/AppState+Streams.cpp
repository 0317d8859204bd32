// The streams that feed the state. Each is taken on the main thread, one element at a time, for as long as it lasts.
#include <utility>

#include "engine/AudioAppDetector.h"
#include "engine/OutputDeviceMonitor.h"
#include "engine/SystemMasterVolume.h"
#include "integrations/NowPlayingMonitor.h"
#include "state/AppState.h"
#include "state/EngineCalls.h"

namespace quillmere {

void AppState::startStreams() {
  startDetectionStream();
  startLevelStream();
  startOutputDeviceStream();
  startNowPlayingStream();
  startBrowserTabStream();
}

void AppState::startDetectionStream() {
  startTask(runtime_.main, [self = shared_from_this()](TaskContext&) -> Async<void> {
    auto results = self->detector_->runningAudioApps();
    const auto taps = self->engine_->changes().follow(results.asker());
    const auto clock = self->runtime_.clocks.settings().follow(results.asker());
    while (true) {
      auto result = co_await results.next();
      if (!result) co_return;

      std::vector<AudioApp> toRestore;
      self->apps_.set(self->mergeKeepingState(result->apps, toRestore));

      auto sounding = std::move(result->liveBundleIDs);
      sounding.merge(self->engine_->activeBundleIDs());
      self->noteSounding(sounding);

      // The map first: a tap can only be made over processes that the engine knows.
      self->engine_->updateProcessMap(std::move(result->snapshots));
      for (const auto& stored : toRestore) self->restoreEngineState(stored);

      self->takeMicrophoneUsers(result->micBundleIDs);

      results.setPace(self->restUntilSoundingChanges(sounding) ? Pace::whenChanged : Pace::everyPeriod);
    }
  });
}

void AppState::startLevelStream() {
  startTask(runtime_.main, [self = shared_from_this()](TaskContext&) -> Async<void> {
    auto levels = self->engine_->levelsStream();
    levels.setPace(Pace::whenChanged);
    // Read and dropped: no field shows levels by application.
    while (true) {
      const auto element = co_await levels.next();
      if (!element) co_return;
    }
  });
}

void AppState::startOutputDeviceStream() {
  startTask(runtime_.main, [self = shared_from_this()](TaskContext&) -> Async<void> {
    auto lists = self->deviceMonitor_->stream();
    lists.setPace(Pace::whenChanged);
    std::optional<std::string> lastDefaultUID;
    while (true) {
      auto list = co_await lists.next();
      if (!list) co_return;

      std::optional<std::string> defaultUID;
      for (const auto& device : *list) {
        if (!device.isDefault) continue;
        defaultUID = device.uid;
        break;
      }
      self->outputDevices_.set(std::move(*list));
      if (defaultUID == lastDefaultUID) continue;

      // Somebody else may have moved the default: the volume shown and watched is the new device's.
      self->followDefaultOutput();
      lastDefaultUID = std::move(defaultUID);
    }
  });
}

void AppState::startNowPlayingStream() {
  startTask(runtime_.main, [self = shared_from_this()](TaskContext&) -> Async<void> {
    auto tracks = self->nowPlayingMonitor_->stream();
    tracks.setPace(Pace::whenChanged);
    self->askForTrack_ = tracks.asker();
    while (true) {
      auto track = co_await tracks.next();
      if (!track) co_return;

      const bool plays = *track && (*track)->isPlaying;
      self->nowPlaying_.set(std::move(*track));
      // Something plays again: a key pressed later would stop it.
      if (plays) self->pendingResumeDeviceUID_.reset();
    }
  });
}

}  // namespace quillmere
