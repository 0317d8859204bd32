// Keeps the box, asks the store for the picture.
#include "views/design/Symbol.h"

#include <cmath>

#include "views/design/BrandGradient.h"
#include "views/design/SymbolStore.h"
#include "views/design/Tokens.h"

namespace quillmere {
namespace {

// A symbol's grid has some air around the drawing; at this share its ink is as tall as a symbol of that size should be.
constexpr double extentPerPoint = 1.45;

int even(double length) { return 2 * static_cast<int>(std::lround(length / 2)); }

}  // namespace

Symbol::Symbol(QQuickItem* parent) : ImageItem(parent), color_(toColor(design::colour::textPrimary)) { resize(); }

void Symbol::setName(const QString& name) {
  if (name_ == name) return;
  name_ = name;
  Q_EMIT nameChanged();
  resize();
  repaint();
}

void Symbol::setPointSize(double size) {
  if (pointSize_ == size) return;
  pointSize_ = size;
  Q_EMIT pointSizeChanged();
  resize();
}

void Symbol::setWeight(int weight) {
  if (weight_ == weight) return;
  weight_ = weight;
  Q_EMIT weightChanged();
  repaint();
}

void Symbol::setColor(const QColor& color) {
  if (color_ == color) return;
  color_ = color;
  Q_EMIT colorChanged();
  repaint();
}

void Symbol::setUseGradient(bool useGradient) {
  if (useGradient_ == useGradient) return;
  useGradient_ = useGradient;
  Q_EMIT useGradientChanged();
  repaint();
}

int Symbol::extentFor(double pointSize) { return even(pointSize * extentPerPoint); }

QImage Symbol::paintPicture(QSize pixels, double) {
  if (name_.isEmpty()) return {};
  const QBrush ink = useGradient_ ? QBrush(brandGradient::primary(QRectF(QPointF(), QSizeF(pixels)))) : QBrush(color_);
  return SymbolStore::draw(SymbolStore::symbolPath(name_), pixels, ink, weight_);
}

void Symbol::resize() {
  const int extent = extentFor(pointSize_);
  const QSizeF grid = name_.isEmpty() ? QSizeF() : SymbolStore::gridSize(SymbolStore::symbolPath(name_));
  const bool square = grid.isEmpty() || grid.width() == grid.height();
  setImplicitSize(square ? extent : even(extent * grid.width() / grid.height()), extent);
}

}  // namespace quillmere
