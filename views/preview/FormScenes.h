// The set-up pages and the first run in the states that pictures are taken of.
#pragma once

#include <vector>

#include "views/preview/PreviewScenes.h"

namespace quillmere {

[[nodiscard]] std::vector<PreviewScene> formScenes();

}  // namespace quillmere
