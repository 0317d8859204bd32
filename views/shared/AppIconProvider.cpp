// Application icons for QML.
#include "views/shared/AppIconProvider.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QIcon>
#include <QImageReader>
#include <QLoggingCategory>
#include <QPainter>
#include <QThreadPool>
#include <QUrlQuery>
#include <algorithm>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

#include "platform/Workspace.h"

namespace quillmere {

Q_LOGGING_CATEGORY(icons, "app.quillmere.icons", QtInfoMsg)

/// What was left out has a line in the log, once for each file, however often it is asked for. [any]
class IconOmissions {
 public:
  void tell(const QString& path, const QString& problem) {
    {
      const std::scoped_lock lock(mutex_);
      if (told_.size() >= maxTold || !told_.insert(path).second) return;
    }
    // A file may be called anything; a line is one line.
    constexpr qsizetype maxLength = 200;
    qCWarning(icons, "icon left out: %s: %s", qUtf8Printable(path.simplified().left(maxLength)),
              qUtf8Printable(problem));
  }

 private:
  static constexpr std::size_t maxTold = 100;
  std::mutex mutex_;
  std::set<QString> told_;
};

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

/// What is larger is no icon, whatever it is: its head says so, and the rest is not read.
constexpr int maxSide = 4096;
constexpr qint64 maxFileBytes = qint64{16} * 1024 * 1024;

/// An image no larger than `size`, with its proportions kept. Vector files are drawn at that size. Null, with `problem`
/// saying why, for what is no picture or no icon's.
QImage readImage(QImageReader& reader, QSize size, QString& problem) {
  reader.setAutoTransform(true);
  const auto natural = reader.size();
  const bool isVector = reader.format().startsWith("svg");
  if (!isVector && (natural.width() > maxSide || natural.height() > maxSide)) {
    problem = QStringLiteral("%1 by %2 pixels").arg(natural.width()).arg(natural.height());
    return {};
  }
  if (natural.isValid() && (isVector || natural.width() > size.width() || natural.height() > size.height())) {
    reader.setScaledSize(natural.scaled(size, Qt::KeepAspectRatio).expandedTo({1, 1}));
  }
  auto image = reader.read();
  if (image.isNull()) problem = reader.errorString();
  return image;
}

/// The picture in a file. What is no file of a sensible size is not opened: a pipe would never end.
QImage readFile(const QString& path, QSize size, IconOmissions& omissions) {
  const QFileInfo file(path);
  QString problem;
  QImage image;
  if (!file.isFile()) {
    problem = QStringLiteral("no file");
  } else if (file.size() > maxFileBytes) {
    problem = QStringLiteral("too large");
  } else {
    QImageReader reader(path);
    // The name is only what somebody has called it.
    reader.setDecideFormatFromContent(true);
    image = readImage(reader, size, problem);
  }
  if (!problem.isEmpty()) omissions.tell(path, problem);
  return image;
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

}  // namespace

/// Draws icons of the theme, which belongs to the main thread.
class AppIconProvider::ThemedIcons : public std::enable_shared_from_this<ThemedIcons> {
 public:
  /// [any]
  void draw(std::shared_ptr<Delivery> delivery, const QString& name, const Box& box) {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [self = shared_from_this(), delivery = std::move(delivery), name, box] {
          const auto job = [delivery, name, box] {
            const auto icon = QIcon::fromTheme(name);
            deliver(*delivery, icon.isNull() ? QImage() : boxed(icon.pixmap(box.size, 1.0).toImage(), box));
          };
          if (self->waits_) {
            self->waiting_.emplace_back(job);
          } else {
            job();
          }
        });
  }
  /// [main]
  void setWaits(bool waits) {
    waits_ = waits;
    if (waits) return;
    for (const auto& job : std::exchange(waiting_, {})) job();
  }

 private:
  bool waits_ = false;
  std::vector<std::function<void()>> waiting_;
};

AppIconProvider::AppIconProvider(Workspace& workspace)
    : workspace_(workspace), omissions_(std::make_shared<IconOmissions>()), themed_(std::make_shared<ThemedIcons>()) {}

AppIconProvider::~AppIconProvider() = default;

void AppIconProvider::waitForPicture() { themed_->setWaits(true); }

void AppIconProvider::pictureStands() { themed_->setWaits(false); }

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
  QThreadPool::globalInstance()->start([&workspace = workspace_, omissions = omissions_, themedIcons = themed_,
                                        delivery = response->delivery(), bundleID, box] {
    const auto icon = workspace.icon(bundleID);
    if (!icon) {
      deliver(*delivery, {});
    } else if (const auto* themed = std::get_if<ThemedIcon>(&*icon)) {
      themedIcons->draw(delivery, QString::fromStdString(themed->name), box);
    } else if (const auto* file = std::get_if<FileIcon>(&*icon)) {
      deliver(*delivery, boxed(readFile(QString::fromStdString(file->path), box.size, *omissions), box));
    } else {
      const auto& png = std::get<EncodedIcon>(*icon).png;
      QByteArray bytes(reinterpret_cast<const char*>(png.data()), static_cast<qsizetype>(png.size()));
      QBuffer buffer(&bytes);
      QImageReader reader(&buffer);
      QString problem;
      deliver(*delivery, boxed(readImage(reader, box.size, problem), box));
    }
  });
  return response;
}

}  // namespace quillmere
