// What the windows' presenters stand on. Made once; each presenter takes what it needs.
#pragma once

#include <memory>
#include <string>

#include "runtime/Runtime.h"
#include "views/ViewIntents.h"

namespace quillmere {

class DesktopServices;
class MixerState;
class ViewSettings;

/// [main] The references outlive every window.
struct ViewServices {
  std::shared_ptr<MixerState> state;
  Runtime runtime;
  std::shared_ptr<ViewSettings> settings;
  /// What windows ask the desktop themselves; its workspace is asked for icons, from any thread.
  DesktopServices& desktop;
  ViewIntents intents;
  /// The version of this program.
  std::string appVersion;
};

}  // namespace quillmere
