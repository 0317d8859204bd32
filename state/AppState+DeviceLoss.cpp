// Device-loss pause: media stops when the output it plays on goes away, and goes on when that very device is back.
#include <algorithm>

#include "engine/HeadphoneMonitor.h"
#include "state/AppState.h"

namespace quillmere {

namespace {
/// Time for the returned device to become the output.
constexpr auto resumeDelay = std::chrono::milliseconds(800);
}  // namespace

void AppState::startHeadphoneMonitor() {
  headphoneMonitor_->onDisconnect = [weak = weak_from_this()](const std::optional<std::string>& deviceUID) {
    const auto self = weak.lock();
    if (self && *self->pauseOnHeadphoneDisconnect_) self->pauseForDeviceRemoval(deviceUID);
  };
  headphoneMonitor_->onDeviceRemoved = [weak = weak_from_this()](const std::string& deviceUID) {
    if (const auto self = weak.lock()) self->deviceRemoved(deviceUID);
  };
  headphoneMonitor_->onDeviceAdded = [weak = weak_from_this()](const std::string& deviceUID) {
    if (const auto self = weak.lock()) self->deviceAdded(deviceUID);
  };
  headphoneMonitor_->start();
}

void AppState::deviceRemoved(const std::string& deviceUID) {
  if (!*pauseOnHeadphoneDisconnect_) return;
  if (pendingResumeDeviceUID_) return;
  const bool somebodyPlayedThere =
      std::ranges::any_of(*apps_, [&deviceUID](const AudioApp& app) { return app.routedDeviceUID == deviceUID; });
  if (somebodyPlayedThere) pauseForDeviceRemoval(deviceUID);
}

void AppState::pauseForDeviceRemoval(const std::optional<std::string>& deviceUID) {
  if (const auto& track = *nowPlaying_) {
    if (!track->isPlaying) return;
  } else if (std::ranges::includes(*micBundleIDs_, *liveBundleIDs_)) {
    // No player is known: something must sound that is not just a call.
    return;
  }
  machine_.mediaKeys->press(mediakey::play, mediakey::Purpose::pause);
  pendingResumeDeviceUID_ = deviceUID;
  // What still plays at the next look has not been paused by this.
  askForTrack_();
}

void AppState::deviceAdded(const std::string& deviceUID) {
  if (!*pauseOnHeadphoneDisconnect_) return;
  if (pendingResumeDeviceUID_ != deviceUID) return;
  pendingResumeDeviceUID_.reset();
  startTask(runtime_.main, [self = shared_from_this()](TaskContext& task) -> Async<void> {
    co_await task.sleep(resumeDelay);
    // The key is a toggle: what has meanwhile started by itself must not be stopped.
    const auto& track = *self->nowPlaying_;
    if (!track || !track->isPlaying) {
      self->machine_.mediaKeys->press(mediakey::play, mediakey::Purpose::resume);
    }
  });
}

}  // namespace quillmere
