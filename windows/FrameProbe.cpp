// One node of one point.
#include "windows/FrameProbe.h"

#include <QQuickWindow>
#include <QSGRectangleNode>

namespace quillmere {

FrameProbe::FrameProbe(QQuickItem& content) : QQuickItem(&content) {
  setFlag(ItemHasContents);
  setSize(QSizeF(1, 1));
  // Above what covers the window, or it would not be drawn.
  setZ(1);
}

QSGNode* FrameProbe::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
  auto* dot = node != nullptr ? static_cast<QSGRectangleNode*>(node) : window()->createRectangleNode();
  dot->setRect(boundingRect());
  dot->setColor(Qt::transparent);
  return dot;
}

}  // namespace quillmere
