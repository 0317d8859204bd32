// The machine as the program sees it: one of each port. Made once at the top and handed down.
#pragma once

#include <memory>

#include "platform/AudioHardware.h"
#include "platform/BrowserCompanions.h"
#include "platform/MediaKeys.h"
#include "platform/NowPlayingSource.h"
#include "platform/ReleaseFeed.h"
#include "platform/SoundPlayer.h"
#include "platform/TabScripting.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

namespace quillmere {

struct Machine {
  std::unique_ptr<AudioHardware> audio;
  std::unique_ptr<UserDefaults> defaults;
  std::unique_ptr<Workspace> workspace;
  std::unique_ptr<NowPlayingSource> nowPlaying;
  std::unique_ptr<MediaKeys> mediaKeys;
  std::unique_ptr<SoundPlayer> sounds;
  /// Null where no feed is known.
  std::unique_ptr<ReleaseFeed> releaseFeed = nullptr;
  /// Null where nobody speaks to browsers: then there are no tabs.
  std::unique_ptr<TabScripting> tabScripting = nullptr;
  /// Null where browsers tell nothing by themselves.
  std::unique_ptr<BrowserCompanions> browserCompanions = nullptr;
};

}  // namespace quillmere
