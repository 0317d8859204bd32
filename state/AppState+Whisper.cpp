// Whisper Mode: one tap takes every application and the master to one low level, the next brings everything back.
// A single step in both directions. The hardware volume stays where it is.
#include "runtime/Threads.h"
#include "state/AppState.h"

namespace quillmere {

void AppState::toggleWhisperMode() {
  QUILLMERE_CHECK_ON(runtime_.main, "toggleWhisperMode off the main thread");

  if (!*isWhisperMode_) {
    preWhisperMaster_ = *masterGain_;
    auto apps = apps_.get();
    for (auto& app : apps) {
      preWhisperGains_[app.bundleID] = app.gain;
      // A flat value: one that stood below the level, even at 0, goes up to it.
      app.gain = *whisperLevel_;
    }
    apps_.set(apps);
    for (const auto& app : apps) sendGain(*whisperLevel_, app.bundleID);
    masterGain_.set(*whisperLevel_);
    storeMasterGain();
    isWhisperMode_.set(true);
    return;
  }

  restoreGains(preWhisperGains_);
  masterGain_.set(preWhisperMaster_);
  storeMasterGain();
  preWhisperGains_.clear();
  isWhisperMode_.set(false);
}

}  // namespace quillmere
