// Draws the program's icon when it is built: app_icons ICON.svg FOLDER SIZE... writes FOLDER/SIZE.png for each.
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>
#include <cstddef>
#include <cstdio>
#include <span>

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  if (arguments.size() < 4) {
    std::fputs("usage: app_icons ICON.svg FOLDER SIZE...\n", stderr);
    return 2;
  }
  QSvgRenderer icon(QString::fromLocal8Bit(arguments[1]));
  if (!icon.isValid()) {
    std::fprintf(stderr, "app_icons: %s cannot be read\n", arguments[1]);
    return 1;
  }
  for (const char* word : arguments.subspan(3)) {
    const int size = QByteArray(word).toInt();
    if (size <= 0) {
      std::fprintf(stderr, "app_icons: '%s' is no size\n", word);
      return 2;
    }
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    icon.render(&painter, QRectF(0, 0, size, size));
    painter.end();
    const auto file = QString::fromLocal8Bit(arguments[2]) + QStringLiteral("/%1.png").arg(size);
    if (!picture.save(file, "PNG")) {
      std::fprintf(stderr, "app_icons: %s cannot be written\n", file.toLocal8Bit().constData());
      return 1;
    }
  }
  return 0;
}
