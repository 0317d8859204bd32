// What the windows' presenters stand on. Made once; each presenter takes what it needs.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "views/ViewIntents.h"

namespace quillmere {

class MixerState;
class ViewSettings;
class Workspace;

/// [main] The references outlive every window.
struct ViewServices {
  std::shared_ptr<MixerState> state;
  Runtime runtime;
  std::shared_ptr<ViewSettings> settings;
  /// Asked for icons, from any thread.
  Workspace& workspace;
  ViewIntents intents;
  /// The version of this program.
  std::string appVersion;
  /// The newest version that has been published, as far as it is known. Null where nobody looks for one.
  std::shared_ptr<const Observable<std::optional<std::string>>> latestVersion;
};

}  // namespace quillmere
