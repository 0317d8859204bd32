// Built where the distribution has no library for the layer shell.
#include "windows/LayerShell.h"

namespace quillmere::layershell {

bool isOffered() { return false; }

std::unique_ptr<PopoverStage> makeStage(const Runtime& /*runtime*/) { return nullptr; }

}  // namespace quillmere::layershell
