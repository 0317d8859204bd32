// Blurs once for each look, then stretches the middle of the picture as a nine-patch.
#include "views/design/SoftShadow.h"

#include <QCache>
#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <QSGNinePatchNode>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "views/design/BrandGradient.h"
#include "views/design/Tokens.h"

namespace quillmere {
namespace {

constexpr double reachInRadii = 2.6;
constexpr int cacheKilobytes = 2048;

// Three box blurs stand for the Gaussian; their widths follow the deviation.
std::vector<int> boxesFor(double deviation) {
  constexpr int passes = 3;
  const double ideal = std::sqrt(12 * deviation * deviation / passes + 1);
  int low = static_cast<int>(ideal);
  if (low % 2 == 0) --low;
  low = std::max(low, 1);
  const double lowCount =
      (12 * deviation * deviation - passes * low * low - 4.0 * passes * low - 3.0 * passes) / (-4.0 * low - 4);
  std::vector<int> boxes;
  boxes.reserve(static_cast<std::size_t>(passes));
  for (int i = 0; i < passes; ++i) boxes.push_back(i < std::lround(lowCount) ? low : low + 2);
  return boxes;
}

/// Values in rows of `width`; the rows are added up whole, which a processor does several numbers at a time.
struct Raster {
  std::size_t width = 0;
  std::size_t height = 0;
  std::vector<float> values;

  [[nodiscard]] const float* row(std::size_t y) const { return values.data() + y * width; }
  [[nodiscard]] float* row(std::size_t y) { return values.data() + y * width; }
};

/// Each value becomes the mean of the `box` values above, at and below it. `blurred` is a raster of the same size for
/// the work.
void blurDownwards(Raster& raster, Raster& blurred, std::size_t box) {
  const std::size_t half = box / 2;
  const float share = 1 / static_cast<float>(box);
  const auto add = [width = raster.width](std::vector<float>& sum, const float* row, float factor) {
    for (std::size_t x = 0; x < width; ++x) sum[x] += factor * row[x];
  };
  std::vector<float> sum(raster.width);
  for (std::size_t y = 0; y < std::min(half, raster.height); ++y) add(sum, raster.row(y), 1);
  for (std::size_t y = 0; y < raster.height; ++y) {
    if (y + half < raster.height) add(sum, raster.row(y + half), 1);
    float* const to = blurred.row(y);
    for (std::size_t x = 0; x < raster.width; ++x) to[x] = share * sum[x];
    if (y >= half) add(sum, raster.row(y - half), -1);
  }
  std::swap(raster, blurred);
}

Raster transposed(const Raster& raster) {
  Raster turned{raster.height, raster.width, std::vector<float>(raster.values.size())};
  for (std::size_t y = 0; y < raster.height; ++y) {
    const float* const from = raster.row(y);
    for (std::size_t x = 0; x < raster.width; ++x) turned.row(x)[y] = from[x];
  }
  return turned;
}

void blurDownwards(Raster& raster, const std::vector<int>& boxes) {
  Raster blurred = raster;
  for (const int box : boxes) blurDownwards(raster, blurred, static_cast<std::size_t>(box));
}

}  // namespace

double ShadowShape::reach() const { return std::ceil(reachInRadii * radius + offsetDown) + 1; }

QImage drawShadow(const ShadowShape& shape, double scale) {
  const double reach = shape.reach();
  const int width = static_cast<int>(std::ceil((shape.size.width() + 2 * reach) * scale));
  const int height = static_cast<int>(std::ceil((shape.size.height() + 2 * reach) * scale));
  const QRectF body(QPointF(reach, reach), shape.size);
  const double corner = std::min(shape.corner, std::min(shape.size.width(), shape.size.height()) / 2);

  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(body.translated(0, shape.offsetDown), corner, corner);
  }
  Raster ink{static_cast<std::size_t>(width), static_cast<std::size_t>(height), {}};
  ink.values.reserve(ink.width * ink.height);
  for (int y = 0; y < height; ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < width; ++x) ink.values.push_back(static_cast<float>(qAlpha(line[x])));
  }
  if (shape.radius > 0) {
    const auto boxes = boxesFor(shape.radius * scale);
    blurDownwards(ink, boxes);
    ink = transposed(ink);
    blurDownwards(ink, boxes);
    ink = transposed(ink);
  }
  for (int y = 0; y < height; ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    const float* const from = ink.row(static_cast<std::size_t>(y));
    for (int x = 0; x < width; ++x)
      line[x] = qRgba(0, 0, 0, static_cast<int>(std::clamp(from[x], 0.0f, 255.0f) + 0.5f));
  }
  if (shape.cutOut) {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(body, corner, corner);
  }
  return image;
}

SoftShadow::SoftShadow(QQuickItem* parent) : QQuickItem(parent), color_(toColor(design::colour::black)) {
  setFlag(ItemHasContents);
  polish();
}

void SoftShadow::setColor(const QColor& color) {
  if (color_ == color) return;
  color_ = color;
  changed();
}

void SoftShadow::setUseGradient(bool useGradient) {
  if (useGradient_ == useGradient) return;
  useGradient_ = useGradient;
  changed();
}

void SoftShadow::setCorner(double corner) {
  if (corner_ == corner) return;
  corner_ = corner;
  changed();
}

void SoftShadow::setBlurRadius(double radius) {
  if (radius_ == radius) return;
  radius_ = radius;
  changed();
}

void SoftShadow::setOffsetDown(double offset) {
  if (offsetDown_ == offset) return;
  offsetDown_ = offset;
  changed();
}

void SoftShadow::setCutOut(bool cutOut) {
  if (cutOut_ == cutOut) return;
  cutOut_ = cutOut;
  changed();
}

void SoftShadow::changed() {
  Q_EMIT lookChanged();
  polish();
}

void SoftShadow::updatePolish() {
  static QCache<QString, QImage> pictures(cacheKilobytes);
  if (!window() || !isVisible() || boundingRect().isEmpty()) return;
  ShadowShape shape{.size = size(), .corner = corner_, .radius = radius_, .offsetDown = offsetDown_, .cutOut = cutOut_};
  const double reach = shape.reach();
  // What lies between the corners is alike all along, so a small body stands for every larger one.
  const double cornerRegion = std::ceil(corner_ + reach);
  const QSizeF smallest(2 * cornerRegion + 2, 2 * cornerRegion + 2);
  shape.size = shape.size.boundedTo(smallest);
  // An axis that has no such middle is drawn as it is: whole points of border, or they would overlap by one.
  const auto border = [reach, cornerRegion](double whole, double drawn) {
    return whole > drawn ? reach + cornerRegion : std::floor(drawn / 2 + reach);
  };
  padding_ = QSizeF(border(width(), shape.size.width()), border(height(), shape.size.height()));
  scale_ = window()->effectiveDevicePixelRatio();

  const QString key = QStringLiteral("%1 %2 %3 %4 %5 %6 %7")
                          .arg(shape.size.width())
                          .arg(shape.size.height())
                          .arg(corner_)
                          .arg(radius_)
                          .arg(offsetDown_)
                          .arg(cutOut_)
                          .arg(scale_);
  if (const QImage* known = pictures.object(key)) {
    image_ = *known;
  } else {
    image_ = drawShadow(shape, scale_);
    pictures.insert(key, new QImage(image_), static_cast<int>(image_.sizeInBytes() / 1024) + 1);
  }
  QPainter painter(&image_);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  if (useGradient_) {
    painter.setOpacity(color_.alphaF());
    const QRectF body(QPointF(reach, reach) * scale_, shape.size * scale_);
    painter.fillRect(image_.rect(), brandGradient::primary(body));
  } else {
    painter.fillRect(image_.rect(), color_);
  }
  painter.end();
  place_ = boundingRect().adjusted(-reach, -reach, reach, reach);
  imageChanged_ = true;
  update();
}

QSGNode* SoftShadow::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
  auto* node = static_cast<QSGNinePatchNode*>(old);
  if (image_.isNull() || boundingRect().isEmpty()) {
    delete node;
    return nullptr;
  }
  if (!node) {
    node = window()->createNinePatchNode();
    imageChanged_ = true;
  }
  if (imageChanged_) {
    QSGTexture* texture = window()->createTextureFromImage(image_, QQuickWindow::TextureHasAlphaChannel);
    texture->setFiltering(QSGTexture::Linear);
    node->setTexture(texture);
    imageChanged_ = false;
  }
  node->setDevicePixelRatio(scale_);
  node->setPadding(padding_.width(), padding_.height(), padding_.width(), padding_.height());
  node->setBounds(place_);
  node->update();
  return node;
}

void SoftShadow::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
  QQuickItem::geometryChange(newGeometry, oldGeometry);
  if (newGeometry.size() != oldGeometry.size()) polish();
}

void SoftShadow::itemChange(ItemChange change, const ItemChangeData& data) {
  QQuickItem::itemChange(change, data);
  if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && data.window) ||
      (change == ItemVisibleHasChanged && data.boolValue)) {
    polish();
  }
}

}  // namespace quillmere
