// The display's own window behind one of the toolkit's. It goes when the window closes; the toolkit's stays, and gets
// another one when it is shown again, which knows nothing of what was said to the one before it.
#pragma once

#include <functional>

class QWindow;

namespace quillmere {

/// Calls for each window that the display makes behind `window`, before it shows; at once where there is one already.
/// For as long as `window` lives. [main]
void onNativeWindow(QWindow& window, std::function<void(QWindow& window)> made);

}  // namespace quillmere
