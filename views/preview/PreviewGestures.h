// What scenes do with a window, and what they show in it.
#pragma once

#include <QColor>
#include <QPointF>
#include <QString>
#include <functional>
#include <string>

class QQuickItem;
class QQuickWindow;

namespace quillmere {

/// The file of an application icon of one colour and a letter, so that pictures don't depend on what is installed.
[[nodiscard]] std::string previewIcon(const QString& letter, const QColor& color);

void move(QQuickWindow& window, QPointF at);
void click(QQuickWindow& window, QPointF at, Qt::MouseButton button = Qt::LeftButton);
[[nodiscard]] QPointF centreOf(QQuickItem& item);
/// The first item below `root`, itself included, that is wanted.
[[nodiscard]] QQuickItem* find(QQuickItem& root, const std::function<bool(QQuickItem&)>& wanted);
/// The first item with this name that is seen.
[[nodiscard]] QQuickItem* named(QQuickWindow& window, const QString& name);
/// The first item with this text that takes clicks.
[[nodiscard]] QQuickItem* button(QQuickWindow& window, const QString& text);
/// A text of the pages as the chosen language has it.
[[nodiscard]] QString shownText(const char* context, const char* source);
void clickButton(QQuickWindow& window, const QString& text);
/// Lets the window lay out what has come.
void breathe(QQuickWindow& window);

}  // namespace quillmere
