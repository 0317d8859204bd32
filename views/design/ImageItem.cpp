// Paints on the main thread while polishing, hands the picture over while the scene graph syncs.
#include "views/design/ImageItem.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRendererInterface>
#include <cmath>

namespace quillmere {

ImageItem::ImageItem(QQuickItem* parent) : QQuickItem(parent) {
  setFlag(ItemHasContents);
  polish();
}

bool ImageItem::isSoftwareRendered() const {
  if (QQuickWindow::sceneGraphBackend() == QLatin1String("software")) return true;
  const QQuickWindow* view = window();
  return view && view->rendererInterface() &&
         view->rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
}

void ImageItem::repaint() {
  polish();
  // Wished for while polishing it would be a wish for one more frame, with nothing new in it.
  update();
}

void ImageItem::updatePolish() {
  if (!window() || !isVisible()) return;
  const double scale = window()->effectiveDevicePixelRatio();
  const QRectF wanted = boundingRect().adjusted(-margin(), -margin(), margin(), margin());
  const QSize pixels(static_cast<int>(std::ceil(wanted.width() * scale - 1e-6)),
                     static_cast<int>(std::ceil(wanted.height() * scale - 1e-6)));
  image_ = boundingRect().isEmpty() ? QImage() : paintPicture(pixels, scale);
  // Whole pixels, so that nothing is stretched.
  place_ = QRectF(wanted.topLeft() + QPointF(image_.offset()) / scale, QSizeF(image_.size()) / scale);
  imageChanged_ = true;
}

QSGNode* ImageItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
  auto* node = static_cast<QSGImageNode*>(old);
  if (image_.isNull()) {
    delete node;
    return nullptr;
  }
  if (!node) {
    node = window()->createImageNode();
    node->setOwnsTexture(true);
    node->setFiltering(QSGTexture::Linear);
    imageChanged_ = true;
  }
  if (imageChanged_) {
    node->setTexture(window()->createTextureFromImage(image_, QQuickWindow::TextureHasAlphaChannel));
    imageChanged_ = false;
  }
  node->setRect(place_);
  return node;
}

void ImageItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
  QQuickItem::geometryChange(newGeometry, oldGeometry);
  if (newGeometry.size() != oldGeometry.size()) repaint();
}

void ImageItem::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickItem::itemChange(change, data);
  // What nobody sees is painted when it is shown.
  if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && data.window) ||
      (change == ItemVisibleHasChanged && data.boolValue)) {
    repaint();
  }
}

}  // namespace quillmere
