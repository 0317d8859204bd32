// The keys of the player that is shown: each does what it does on a keyboard, every time.
#include "platform/MediaKeys.h"
#include "runtime/Threads.h"
#include "state/AppState.h"

namespace quillmere {

void AppState::previousTrack() {
  QUILLMERE_CHECK_ON(runtime_.main, "previousTrack off the main thread");
  machine_.mediaKeys->press(mediakey::previous, mediakey::Purpose::person);
}

void AppState::togglePlayPause() {
  QUILLMERE_CHECK_ON(runtime_.main, "togglePlayPause off the main thread");
  if (!*nowPlaying_) return;
  machine_.mediaKeys->press(mediakey::play, mediakey::Purpose::person);
}

void AppState::nextTrack() {
  QUILLMERE_CHECK_ON(runtime_.main, "nextTrack off the main thread");
  machine_.mediaKeys->press(mediakey::next, mediakey::Purpose::person);
}

}  // namespace quillmere
