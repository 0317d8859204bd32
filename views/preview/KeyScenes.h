// What the keyboard is on, on each kind of control.
#pragma once

#include <vector>

#include "views/preview/PreviewScenes.h"

namespace quillmere {

[[nodiscard]] std::vector<PreviewScene> keyScenes();

}  // namespace quillmere
