// The program's own images at the sizes the desktop asks for.
#include "windows/BrandIconImage.h"

#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace quillmere {

namespace {

QPixmap tinted(QPixmap image, const QColor& color) {
  QPainter painter(&image);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), color);
  return image;
}

/// Draws the resource into a canvas of `width` by `height` pixels, its proportions kept, centred.
QPixmap rendered(QSvgRenderer& renderer, int width, int height) {
  QPixmap image(width, height);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  renderer.render(&painter, QRectF(0, 0, width, height));
  return image;
}

/// A square drawing in an ink, whatever colour it has.
QImage inkedImage(const QImage& drawing, Ink ink) {
  const QImage mask = drawing.convertToFormat(QImage::Format_Alpha8);
  std::vector<std::uint8_t> alpha;
  for (int y = 0; y < mask.height(); ++y) {
    const std::span line(mask.constScanLine(y), static_cast<std::size_t>(mask.width()));
    alpha.insert(alpha.end(), line.begin(), line.end());
  }
  const auto pixels = inked(alpha, mask.width(), ink, outlineWidth(mask.width()));
  QImage image(mask.size(), QImage::Format_ARGB32);
  auto pixel = pixels.begin();
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) image.setPixel(x, y, *pixel++);
  }
  return image;
}

}  // namespace

QPixmap BrandIconImage::statusBar(int height, const QColor& color, qreal devicePixelRatio) {
  QSvgRenderer renderer(QStringLiteral(":/quillmere/statusbaricon.svg"));
  const int pixels = qRound(height * devicePixelRatio);
  QPixmap image;
  if (renderer.isValid()) {
    const QSizeF natural = renderer.defaultSize();
    const int width = qRound(natural.width() * pixels / std::max(natural.height(), 1.0));
    image = rendered(renderer, width, pixels);
  } else {
    image = QPixmap(pixels, pixels);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawEllipse(image.rect());
  }
  image = tinted(image, color);
  image.setDevicePixelRatio(devicePixelRatio);
  return image;
}

QIcon BrandIconImage::statusBarIcon(Ink ink) {
  // Trays ask for squares; the image stands centred in one, with the air other tray icons have. At 22, what most ask
  // for, it is 18 high, where its strokes fall on whole pixels.
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 44, 48, 64}) {
    QPixmap canvas(size, size);
    canvas.fill(Qt::transparent);
    const auto image = statusBar(std::max(1, size * 18 / 22), Qt::black, 1.0);
    QPainter painter(&canvas);
    const auto target = image.size().scaled(canvas.size(), Qt::KeepAspectRatio).boundedTo(image.size());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRect(QPoint((size - target.width()) / 2, (size - target.height()) / 2), target), image);
    painter.end();
    icon.addPixmap(QPixmap::fromImage(inkedImage(canvas.toImage(), ink)));
  }
  return icon;
}

QPixmap BrandIconImage::dock(int size, qreal devicePixelRatio) {
  QSvgRenderer renderer(QStringLiteral(":/quillmere/icon.svg"));
  if (!renderer.isValid()) return {};
  const int pixels = qRound(size * devicePixelRatio);
  auto image = rendered(renderer, pixels, pixels);
  image.setDevicePixelRatio(devicePixelRatio);
  return image;
}

QIcon BrandIconImage::whisperMenuIcon(const QColor& color) {
  QSvgRenderer renderer(QStringLiteral(":/quillmere/shush.svg"));
  if (!renderer.isValid()) return {};
  QIcon icon;
  for (const int scale : {1, 2}) {
    auto image = tinted(rendered(renderer, 15 * scale, 15 * scale), color);
    image.setDevicePixelRatio(scale);
    icon.addPixmap(image);
  }
  icon.setIsMask(true);
  return icon;
}

}  // namespace quillmere
