// Reads, weights, rasters and tints the drawings, and keeps what was drawn lately.
#include "views/design/SymbolStore.h"

#include <QCache>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QLoggingCategory>
#include <QPainter>
#include <QRegularExpression>
#include <QSet>
#include <QSvgRenderer>
#include <memory>

namespace quillmere {
namespace {

Q_LOGGING_CATEGORY(category, "app.quillmere.design")

const QString symbolFolder = QStringLiteral(":/quillmere/symbols/");
const QString markFolder = QStringLiteral(":/quillmere/");
const QString extension = QStringLiteral(".svg");

constexpr int drawnWeight = 500;  // the files' strokes are drawn for this one
constexpr int maskCacheKilobytes = 1024;

SystemSymbols& systemSymbols() {
  static SystemSymbols symbols;
  return symbols;
}

// The system's picture of what lies at this path; null where it is no symbol, or the system has none.
QImage systemPicture(const QString& path, QSize pixels, int weight) {
  if (!systemSymbols() || pixels.isEmpty() || !path.startsWith(symbolFolder)) return {};
  const auto name = path.sliced(symbolFolder.size()).chopped(extension.size());
  return systemSymbols()(name, pixels, weight).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

// How much wider than drawn a stroke is at a weight.
double strokeFactor(int weight) {
  if (weight <= 300) return 0.74;
  if (weight <= 400) return 0.92;
  if (weight < 600) return 1;
  if (weight < 700) return 1.2;
  return 1.36;
}

QByteArray weighted(const QByteArray& source, int weight) {
  QString text = QString::fromUtf8(source);
  text.replace(QLatin1String("currentColor"), QLatin1String("#000000"));
  const double factor = strokeFactor(weight);
  if (weight == drawnWeight) return text.toUtf8();
  static const QRegularExpression width(QStringLiteral("stroke-width=\"([0-9.]+)\""));
  QString result;
  qsizetype end = 0;
  for (auto match = width.globalMatch(text); match.hasNext();) {
    const QRegularExpressionMatch found = match.next();
    result += QStringView(text).mid(end, found.capturedStart(1) - end);
    result += QString::number(found.captured(1).toDouble() * factor, 'f', 3);
    end = found.capturedEnd(1);
  }
  result += QStringView(text).mid(end);
  return result.toUtf8();
}

QSvgRenderer* rendererFor(const QString& path, int weight) {
  static QHash<QString, std::shared_ptr<QSvgRenderer>> renderers;
  const QString key = path + QLatin1Char('@') + QString::number(strokeFactor(weight));
  const auto known = renderers.constFind(key);
  if (known != renderers.constEnd()) return known->get();
  std::shared_ptr<QSvgRenderer> renderer;
  QFile file(path);
  if (file.open(QIODevice::ReadOnly)) {
    renderer = std::make_shared<QSvgRenderer>(weighted(file.readAll(), weight));
    if (!renderer->isValid()) renderer.reset();
  }
  if (!renderer) qCWarning(category, "No drawing at %ls", qUtf16Printable(path));
  renderers.insert(key, renderer);
  return renderer.get();
}

// Black keeps its coverage, white loses it: the drawing's alpha, with the cut-outs taken away.
QImage maskOf(const QString& path, QSize pixels, int weight) {
  static QCache<QString, QImage> masks(maskCacheKilobytes);
  const QString key = QStringLiteral("%1@%2@%3x%4")
                          .arg(path, QString::number(strokeFactor(weight)))
                          .arg(pixels.width())
                          .arg(pixels.height());
  if (const QImage* known = masks.object(key)) return *known;
  const auto keep = [&key](const QImage& image) {
    masks.insert(key, new QImage(image), static_cast<int>(image.sizeInBytes() / 1024) + 1);
    return image;
  };
  if (const QImage picture = systemPicture(path, pixels, weight); !picture.isNull()) return keep(picture);
  QSvgRenderer* renderer = rendererFor(path, weight);
  if (!renderer || pixels.isEmpty()) return {};

  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const QSizeF grid = renderer->viewBoxF().size();
  const QSizeF fitted = grid.scaled(pixels, Qt::KeepAspectRatio);
  renderer->render(
      &painter,
      QRectF(QPointF((pixels.width() - fitted.width()) / 2, (pixels.height() - fitted.height()) / 2), fitted));
  painter.end();
  for (int row = 0; row < image.height(); ++row) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
    for (int column = 0; column < image.width(); ++column) {
      const int alpha = qAlpha(line[column]) - qRed(line[column]);
      line[column] = qRgba(0, 0, 0, alpha);
    }
  }
  return keep(image);
}

}  // namespace

void SymbolStore::useSystemSymbols(SystemSymbols symbols) { systemSymbols() = std::move(symbols); }

QStringList SymbolStore::symbolNames() {
  QStringList names = QDir(symbolFolder).entryList({QLatin1Char('*') + extension}, QDir::Files, QDir::Name);
  for (QString& name : names) name.chop(extension.size());
  return names;
}

QString SymbolStore::symbolPath(const QString& name) { return symbolFolder + name + extension; }

QString SymbolStore::markPath(const QString& name) { return markFolder + name + extension; }

QSizeF SymbolStore::gridSize(const QString& path) {
  const QSvgRenderer* renderer = rendererFor(path, drawnWeight);
  return renderer ? renderer->viewBoxF().size() : QSizeF();
}

QImage SymbolStore::draw(const QString& path, QSize pixels, const QBrush& ink, int weight) {
  QImage image = maskOf(path, pixels, weight);
  if (image.isNull()) return image;
  QPainter painter(&image);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), ink);
  return image;
}

}  // namespace quillmere
