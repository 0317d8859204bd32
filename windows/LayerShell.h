// A Wayland compositor's layer shell: surfaces that it puts at the edges of a screen, above the windows.
#pragma once

#include <memory>

#include "runtime/Runtime.h"
#include "windows/PopoverStage.h"

namespace quillmere::layershell {

/// Whether the compositor of this session has one and this program can talk with it. Asks the compositor, so once,
/// before the toolkit's start. [main]
[[nodiscard]] bool isOffered();

/// The popover as such a surface. Null where this program can't. [main]
[[nodiscard]] std::unique_ptr<PopoverStage> makeStage(const Runtime& runtime);

}  // namespace quillmere::layershell
