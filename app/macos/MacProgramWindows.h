// The program's windows on a Mac: the toolkit draws them, the system's application object knows them.
#pragma once

#include <memory>

#include "platform/ProgramWindows.h"
#include "runtime/Runtime.h"

namespace quillmere {

class MacStatusItem;
class MixerState;

/// The icon outlives them. [main]
[[nodiscard]] std::unique_ptr<ProgramWindows> makeMacProgramWindows(std::shared_ptr<MixerState> state,
                                                                    const Runtime& runtime, WindowsIntents intents,
                                                                    MacStatusItem& icon);

}  // namespace quillmere
