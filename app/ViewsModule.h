// The windows in a library of their own, which is loaded with the first of them: until then the program is a tray icon.
#pragma once

#include <string>

#include "shell/Views.h"

namespace quillmere {

/// The one function of the module, under its name there.
constexpr const char* viewsModuleEntry = "quillmereMakeViews";
using ViewsModuleEntry = void(Views& views, const std::shared_ptr<AppState>& state, const Runtime& runtime,
                              Machine& machine, const ViewIntents& intents);

/// What loads the module that belongs to this executable. The file is opened here and now: an update of the program may
/// replace it at any time, and what runs must go on with what it was built with.
/// The process ends with a message where the module is missing or can't be loaded, since nothing could ever be shown.
MakeViews openViewsModule();

}  // namespace quillmere
