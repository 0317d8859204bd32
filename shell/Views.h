// The windows as the shell asks for them. What draws them need not be there before the first one is wanted.
#pragma once

#include <functional>
#include <memory>

#include "runtime/Runtime.h"

class QWindow;

namespace quillmere {

class AppState;
struct Machine;
struct ViewIntents;

/// [main] throughout. Windows may be made and destroyed any number of times, and don't need this afterwards.
struct Views {
  /// The mixer panel, not yet shown.
  std::function<std::unique_ptr<QWindow>()> makePopover;
  /// The main window, not yet shown.
  std::function<std::unique_ptr<QWindow>()> makeMainWindow;
};

/// Called once at most, with the first window. The machine and the runtime's services outlive every window.
using MakeViews = std::function<Views(const std::shared_ptr<AppState>& state, const Runtime& runtime, Machine& machine,
                                      const ViewIntents& intents)>;

}  // namespace quillmere
