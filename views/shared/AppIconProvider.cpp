// Application icons for QML.
#include "views/shared/AppIconProvider.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QIcon>
#include <QImageReader>
#include <QPainter>
#include <QThreadPool>
#include <QUrlQuery>
#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/Workspace.h"
#include "views/shared/IconTheme.h"

namespace quillmere {

namespace {

constexpr QSize defaultSize(64, 64);
/// Of the icon's width, where the address names no other share.
constexpr double usualCorner = 5.0 / 22.0;

/// How an icon is to come.
struct Box {
  QSize size;
  /// Of the width.
  double corner = usualCorner;
};

/// An image no larger than `size`, with its proportions kept. Vector files are drawn at that size.
QImage readImage(QImageReader& reader, QSize size) {
  reader.setAutoTransform(true);
  const auto natural = reader.size();
  const bool isVector = reader.format().startsWith("svg");
  if (natural.isValid() && (isVector || natural.width() > size.width() || natural.height() > size.height())) {
    reader.setScaledSize(natural.scaled(size, Qt::KeepAspectRatio).expandedTo({1, 1}));
  }
  return reader.read();
}

/// In the middle of a box with rounded corners, so that every icon fills its place in the same way.
QImage boxed(const QImage& image, const Box& wanted) {
  const auto& size = wanted.size;
  if (image.isNull()) return {};
  const auto scaled = image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  QImage box(size, QImage::Format_ARGB32_Premultiplied);
  box.fill(Qt::transparent);
  QPainter painter(&box);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  QBrush brush(scaled);
  const auto at = QPoint(size.width() - scaled.width(), size.height() - scaled.height()) / 2;
  brush.setTransform(QTransform::fromTranslate(at.x(), at.y()));
  painter.setBrush(brush);
  const double corner = size.width() * wanted.corner;
  painter.setClipRect(QRect(at, scaled.size()));
  painter.drawRoundedRect(QRectF({0, 0}, QSizeF(size)), corner, corner);
  return box;
}

class IconResponse;

/// Where an icon is to be delivered. A window that goes takes its responses along, whoever still looks for their icons.
struct Delivery {
  std::mutex mutex;
  IconResponse* response = nullptr;
};

class IconResponse final : public QQuickImageResponse {
 public:
  IconResponse() { delivery_->response = this; }
  ~IconResponse() override {
    const std::scoped_lock lock(delivery_->mutex);
    delivery_->response = nullptr;
  }

  [[nodiscard]] std::shared_ptr<Delivery> delivery() const { return delivery_; }

  [[nodiscard]] QQuickTextureFactory* textureFactory() const override {
    return QQuickTextureFactory::textureFactoryForImage(image_);
  }

  /// Called once, on any thread. A null image becomes the one clear pixel that stands for none.
  void finish(QImage image) {
    if (image.isNull()) {
      image = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
      image.fill(Qt::transparent);
    }
    image_ = std::move(image);
    // Later, in the thread that asked: it listens only once it has been given this response, and the pool may be
    // quicker.
    QMetaObject::invokeMethod(this, &IconResponse::finished, Qt::QueuedConnection);
  }

 private:
  std::shared_ptr<Delivery> delivery_ = std::make_shared<Delivery>();
  QImage image_;
};

void deliver(Delivery& delivery, QImage image) {
  const std::scoped_lock lock(delivery.mutex);
  if (delivery.response != nullptr) delivery.response->finish(std::move(image));
}

void drawThemed(const std::shared_ptr<Delivery>& delivery, const QString& name, const Box& box) {
  // The icon theme belongs to the main thread.
  QMetaObject::invokeMethod(QCoreApplication::instance(), [delivery, name, box] {
    ensureIconTheme();
    const auto icon = QIcon::fromTheme(name);
    deliver(*delivery, icon.isNull() ? QImage() : boxed(icon.pixmap(box.size, 1.0).toImage(), box));
  });
}

}  // namespace

QUrl AppIconProvider::urlFor(const std::string& bundleID) {
  // An identifier may hold anything; in the address it is plain text.
  const auto encoded =
      QByteArray::fromStdString(bundleID).toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
  return {QStringLiteral("image://%1/%2").arg(QLatin1StringView(id), QString::fromLatin1(encoded))};
}

QQuickImageResponse* AppIconProvider::requestImageResponse(const QString& address, const QSize& requestedSize) {
  const auto encodedID = address.section('?', 0, 0);
  const auto bundleID = QByteArray::fromBase64(encodedID.toLatin1(), QByteArray::Base64UrlEncoding).toStdString();
  Box box;
  box.size = QSize(requestedSize.width() > 0 ? requestedSize.width() : defaultSize.width(),
                   requestedSize.height() > 0 ? requestedSize.height() : defaultSize.height());
  const auto corner = QUrlQuery(address.section('?', 1)).queryItemValue(QStringLiteral("corner"));
  if (!corner.isEmpty()) box.corner = std::clamp(corner.toDouble(), 0.0, 0.5);
  auto* response = new IconResponse;
  QThreadPool::globalInstance()->start([&workspace = workspace_, delivery = response->delivery(), bundleID, box] {
    const auto icon = workspace.icon(bundleID);
    if (!icon) {
      deliver(*delivery, {});
    } else if (const auto* themed = std::get_if<ThemedIcon>(&*icon)) {
      drawThemed(delivery, QString::fromStdString(themed->name), box);
    } else if (const auto* file = std::get_if<FileIcon>(&*icon)) {
      QImageReader reader(QString::fromStdString(file->path));
      deliver(*delivery, boxed(readImage(reader, box.size), box));
    } else {
      const auto& png = std::get<EncodedIcon>(*icon).png;
      QByteArray bytes(reinterpret_cast<const char*>(png.data()), static_cast<qsizetype>(png.size()));
      QBuffer buffer(&bytes);
      QImageReader reader(&buffer);
      deliver(*delivery, boxed(readImage(reader, box.size), box));
    }
  });
  return response;
}

}  // namespace quillmere
