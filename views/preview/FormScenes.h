// The set-up pages and the first run in the states that pictures are taken of.
#pragma once

#include <vector>

#include "views/preview/PreviewScenes.h"

namespace quillmere {

/// Several applications, some installed and some running, on two devices.
void fillForms(PreviewMachine& box);
[[nodiscard]] std::vector<PreviewScene> formScenes();

}  // namespace quillmere
