// Makes a window that has nothing new to show draw a picture all the same, so that its display says whether it wants
// it.
#pragma once

#include <QQuickItem>

namespace quillmere {

/// A clear dot in the window's corner: its coming is a change. [main]
class FrameProbe final : public QQuickItem {
  Q_OBJECT

 public:
  explicit FrameProbe(QQuickItem& content);

 protected:
  QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
};

}  // namespace quillmere
