// Which of Qt Quick's renderers draws.
// Why: docs/decisions/0007-the-software-renderer-without-a-graphics-device.md
#pragma once

namespace quillmere {

/// To be called before the first window.
void chooseRenderer();

}  // namespace quillmere
