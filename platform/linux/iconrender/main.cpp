// Draws the panel's marks when the program is built: icon_render ICON.svg WHISPER.svg OUTPUT.cpp
// Only this tool knows how to render; the program carries what it wrote.
#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextStream>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <span>
#include <vector>

#include "core/PanelInk.h"

namespace {

using quillmere::Ink;

constexpr std::array panelSizes{16, 22, 24, 32, 44, 48, 64};
/// Twice the 15 pixels at which menus show it: hosts scale down well and up badly.
constexpr int whisperSize = 30;
/// One pixel where the menu shows it.
constexpr double whisperOutline = 2;

/// Draws into a canvas of `width` by `height` pixels, proportions kept, centred.
QImage rendered(QSvgRenderer& renderer, int width, int height) {
  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  renderer.render(&painter, QRectF(0, 0, width, height));
  return image;
}

/// Trays ask for squares; the image stands centred in one, with the air other tray icons have. At 22, what most ask
/// for, it is 18 high, where its strokes fall on whole pixels.
QImage panelIcon(QSvgRenderer& renderer, int size) {
  const int height = std::max(1, size * 18 / 22);
  const QSizeF natural = renderer.defaultSize();
  const int width = std::min(size, qRound(natural.width() * height / std::max(natural.height(), 1.0)));
  QImage canvas(size, size, QImage::Format_ARGB32_Premultiplied);
  canvas.fill(Qt::transparent);
  QPainter painter(&canvas);
  painter.drawImage(QPoint((size - width) / 2, (size - height) / 2), rendered(renderer, width, height));
  return canvas;
}

QByteArray mask(const QImage& image) {
  QByteArray alpha;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) alpha.append(static_cast<char>(qAlpha(image.pixel(x, y))));
  }
  return alpha;
}

QByteArray png(const QByteArray& alpha, int size, Ink ink) {
  const std::span bytesOfMask(reinterpret_cast<const std::uint8_t*>(alpha.constData()),
                              static_cast<std::size_t>(alpha.size()));
  const auto pixels = quillmere::inked(bytesOfMask, size, ink, whisperOutline);
  const QImage image(reinterpret_cast<const uchar*>(pixels.data()), size, size, QImage::Format_ARGB32);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return bytes;
}

void writeArray(QTextStream& out, const QString& name, const QByteArray& bytes) {
  out << "constexpr std::array<std::uint8_t, " << bytes.size() << "> " << name << "{";
  for (qsizetype index = 0; index < bytes.size(); ++index) {
    out << (index % 24 == 0 ? "\n    " : "") << static_cast<unsigned>(static_cast<unsigned char>(bytes.at(index)))
        << ",";
  }
  out << "};\n";
}

}  // namespace

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  if (arguments.size() != 4) {
    std::fputs("usage: icon_render ICON.svg WHISPER.svg OUTPUT.cpp\n", stderr);
    return 2;
  }
  QSvgRenderer icon(QString::fromLocal8Bit(arguments[1]));
  QSvgRenderer whisper(QString::fromLocal8Bit(arguments[2]));
  QFile file(QString::fromLocal8Bit(arguments[3]));
  if (!icon.isValid() || !whisper.isValid() || !file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
    std::fputs("icon_render: a drawing cannot be read, or the output not be written\n", stderr);
    return 1;
  }
  QTextStream out(&file);
  out << "// Written by icon_render when the program is built.\n#include <array>\n\n"
      << "#include \"statusitem/PanelIcon.h\"\n\nnamespace quillmere::statusitem {\nnamespace {\n\n";
  QString table;
  for (const int size : panelSizes) {
    const auto name = QStringLiteral("panel%1").arg(size);
    writeArray(out, name, mask(panelIcon(icon, size)));
    table += QStringLiteral("    IconMask{%1, %2},\n").arg(size).arg(name);
  }
  const std::array inks{Ink::light, Ink::dark, Ink::lightOutlined, Ink::darkOutlined};
  for (std::size_t index = 0; index < inks.size(); ++index) {
    // An outline needs room within the picture.
    const int air = quillmere::coloursOf(inks[index]).outline ? static_cast<int>(whisperOutline) : 0;
    QImage drawing(whisperSize, whisperSize, QImage::Format_ARGB32_Premultiplied);
    drawing.fill(Qt::transparent);
    QPainter(&drawing).drawImage(QPoint(air, air), rendered(whisper, whisperSize - 2 * air, whisperSize - 2 * air));
    writeArray(out, QStringLiteral("whisper%1").arg(index), png(mask(drawing), whisperSize, inks[index]));
  }
  out << "constexpr std::array<IconMask, " << panelSizes.size() << "> panel{\n"
      << table << "};\n\n}  // namespace\n\n"
      << "std::span<const IconMask> panelIconMasks() { return panel; }\n\n"
      << "std::span<const std::uint8_t> whisperPng(Ink ink) {\n  switch (ink) {\n"
      << "    case Ink::light: return whisper0;\n    case Ink::dark: return whisper1;\n"
      << "    case Ink::lightOutlined: return whisper2;\n    case Ink::darkOutlined: break;\n  }\n"
      << "  return whisper3;\n}\n\n}  // namespace quillmere::statusitem\n";
  out.flush();
  return file.error() == QFileDevice::NoError ? 0 : 1;
}
