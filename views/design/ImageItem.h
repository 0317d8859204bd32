// An item that shows one picture, painted anew only when something about it changes, at the window's own pixels.
// Looks the same in every renderer of the scene graph.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QImage>
#include <QQuickItem>

namespace quillmere {

/// Subclasses paint; the picture may reach beyond the item by margin() on each side. [main]
class ImageItem : public QQuickItem {
  Q_OBJECT
  QML_ANONYMOUS

 public:
  explicit ImageItem(QQuickItem* parent = nullptr);

 protected:
  /// The picture has to be painted anew before the next frame.
  void repaint();
  /// Paints a picture of so many device pixels, scale of them to a point. A null image shows nothing; one that leaves
  /// out what would be clear says by its offset where it lies in the whole.
  [[nodiscard]] virtual QImage paintPicture(QSize pixels, double scale) = 0;
  [[nodiscard]] virtual double margin() const { return 0; }
  /// The software renderer can't add light; subclasses that glow ask.
  [[nodiscard]] bool isSoftwareRendered() const;

  void updatePolish() override;
  QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
  void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
  void itemChange(ItemChange change, const ItemChangeData& data) override;

 private:
  QImage image_;
  QRectF place_;
  bool imageChanged_ = false;
};

}  // namespace quillmere
