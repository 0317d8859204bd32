// Makes the About panel.
#pragma once

#include <QString>
#include <memory>

class QQuickWindow;

namespace quillmere {

/// The window "About quillmere", not yet shown; as large as what it says, and no other size. Needs nothing of the rest
/// of the program. [main]
[[nodiscard]] std::unique_ptr<QQuickWindow> makeAboutWindow(const QString& version);

}  // namespace quillmere
