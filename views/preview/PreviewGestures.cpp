// What scenes do with a window, and what they show in it.
#include "views/preview/PreviewGestures.h"

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>

namespace quillmere {

std::string previewIcon(const QString& letter, const QColor& color) {
  static const QTemporaryDir folder;
  const auto path = folder.filePath(letter + color.name().mid(1) + QStringLiteral(".png"));
  constexpr int side = 128;
  constexpr int corner = 28;
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(image.rect(), corner, corner);
  QFont font;
  font.setPixelSize(side / 2);
  font.setWeight(QFont::DemiBold);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(image.rect(), Qt::AlignCenter, letter);
  painter.end();
  image.save(path);
  return path.toStdString();
}

void move(QQuickWindow& window, QPointF at) {
  QMouseEvent event(QEvent::MouseMove, at, at, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &event);
}

void click(QQuickWindow& window, QPointF at, Qt::MouseButton button) {
  move(window, at);
  QMouseEvent press(QEvent::MouseButtonPress, at, at, button, button, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &press);
  QMouseEvent release(QEvent::MouseButtonRelease, at, at, button, Qt::NoButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &release);
}

QPointF centreOf(QQuickItem& item) { return item.mapToScene({item.width() / 2, item.height() / 2}); }

QQuickItem* find(QQuickItem& root, const std::function<bool(QQuickItem&)>& wanted) {
  if (wanted(root)) return &root;
  for (auto* child : root.childItems()) {
    if (auto* found = find(*child, wanted)) return found;
  }
  return nullptr;
}

QQuickItem* named(QQuickWindow& window, const QString& name) {
  return find(*window.contentItem(), [&](QQuickItem& item) { return item.isVisible() && item.objectName() == name; });
}

QQuickItem* button(QQuickWindow& window, const QString& text) {
  return find(*window.contentItem(), [&](QQuickItem& item) {
    return item.isVisible() && item.acceptedMouseButtons() != Qt::NoButton &&
           item.property("text").toString().startsWith(text);
  });
}

QString shownText(const char* context, const char* source) { return QCoreApplication::translate(context, source); }

void clickButton(QQuickWindow& window, const QString& text) {
  if (auto* item = button(window, text)) click(window, centreOf(*item));
}

void breathe(QQuickWindow& window) {
  constexpr int frames = 15;
  for (int frame = 0; frame < frames; ++frame) {
    window.update();
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
  }
}

}  // namespace quillmere
