// Keeps the mark's name and tint; the store draws.
#include "views/design/TemplateImage.h"

#include "views/design/SymbolStore.h"
#include "views/design/Tokens.h"

namespace quillmere {

TemplateImage::TemplateImage(QQuickItem* parent) : ImageItem(parent), color_(toColor(design::colour::textPrimary)) {}

void TemplateImage::setMark(const QString& mark) {
  if (mark_ == mark) return;
  mark_ = mark;
  grid_ = mark.isEmpty() ? QSizeF() : SymbolStore::gridSize(SymbolStore::markPath(mark));
  Q_EMIT markChanged();
  repaint();
}

void TemplateImage::setColor(const QColor& color) {
  if (color_ == color) return;
  color_ = color;
  Q_EMIT colorChanged();
  repaint();
}

QImage TemplateImage::paintPicture(QSize pixels, double) {
  if (!available()) return {};
  return SymbolStore::draw(SymbolStore::markPath(mark_), pixels, color_);
}

}  // namespace quillmere
