#include "platform/macos/MacSoundPlayer.h"

#import <AppKit/AppKit.h>

#include "foundation/Text.h"

namespace quillmere {

bool MacSoundPlayer::play(std::string_view name) {
  // The system keeps what it has given a name.
  NSSound* sound = [NSSound soundNamed:macos::nsString(name)];
  if (sound == nil) return false;
  // No for one that plays already, which is a sound that there is.
  [sound play];
  return true;
}

}  // namespace quillmere
