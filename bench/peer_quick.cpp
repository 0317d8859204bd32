// A bare Qt Quick program: one window with one rectangle and one text. First frames are measured beside it.
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <cstdlib>
#include <memory>

namespace {
constexpr auto scene = R"(
import QtQuick

Rectangle {
    width: 340
    height: 480
    color: "#202020"

    Text {
        anchors.centerIn: parent
        text: "peer"
        color: "white"
        font.pixelSize: 24
    }
}
)";
}  // namespace

int main(int argc, char** argv) {
  const QGuiApplication application(argc, argv);
  QQuickView view;
  QQmlComponent component(view.engine());
  component.setData(scene, QUrl());
  auto* root = component.create();
  if (root == nullptr) {
    qCritical("%s", qPrintable(component.errorString()));
    return EXIT_FAILURE;
  }
  view.setContent(QUrl(), &component, root);
  view.show();
  return QGuiApplication::exec();
}
