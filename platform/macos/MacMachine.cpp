// Putting the machine together.
#include "platform/macos/MacMachine.h"

#include <memory>

#include "platform/macos/AppleScriptTabs.h"
#include "platform/macos/MacAudioHardware.h"
#include "platform/macos/MacMediaKeys.h"
#include "platform/macos/MacSoundPlayer.h"
#include "platform/macos/MacUserDefaults.h"
#include "platform/macos/MacWorkspace.h"
#include "platform/macos/MediaRemoteNowPlaying.h"

namespace quillmere {

Machine makeMacMachine() {
  Machine machine;
  machine.audio = std::make_unique<MacAudioHardware>();
  machine.defaults = std::make_unique<MacUserDefaults>();
  machine.workspace = std::make_unique<MacWorkspace>();
  machine.nowPlaying = std::make_unique<MediaRemoteNowPlaying>();
  machine.mediaKeys = std::make_unique<MacMediaKeys>();
  machine.sounds = std::make_unique<MacSoundPlayer>();
  machine.tabScripting = std::make_unique<AppleScriptTabs>();
  return machine;
}

}  // namespace quillmere
