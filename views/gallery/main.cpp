// Shows the gallery; with --shot FILE saves a picture of it and ends.
// --page NAME picks one page ("symbols" or "components").
#include <QtQml/qqmlextensionplugin.h>
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <cstdio>

#include "views/design/SymbolStore.h"

Q_IMPORT_QML_PLUGIN(Quillmere_DesignPlugin)

namespace {

constexpr int settledFrames = 12;

void shootWhenSettled(QQuickWindow* window, const QString& file) {
  auto* frames = new int(0);
  QObject::connect(
      window, &QQuickWindow::frameSwapped, window,
      [window, file, frames] {
        if (++*frames < settledFrames) {
          window->update();
          return;
        }
        delete frames;
        window->disconnect();
        const bool saved = window->grabWindow().save(file);
        std::fprintf(stderr, saved ? "saved %s\n" : "could not save %s\n", qPrintable(file));
        QCoreApplication::exit(saved ? 0 : 1);
      },
      Qt::QueuedConnection);
  window->update();
}

}  // namespace

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  QGuiApplication::setApplicationName("quillmere-gallery");
  QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);

  QCommandLineParser parser;
  const QCommandLineOption shot("shot", "Save a picture and end.", "file");
  const QCommandLineOption page("page", "symbols or components.", "name", "components");
  parser.addOptions({shot, page});
  parser.addHelpOption();
  parser.process(application);

  QQmlApplicationEngine engine;
  engine.addImportPath("qrc:/qt/qml");
  engine.setInitialProperties({{"page", parser.value(page)}, {"symbolNames", quillmere::SymbolStore::symbolNames()}});
  engine.load(QUrl("qrc:/qt/qml/Quillmere/Gallery/Gallery.qml"));
  if (engine.rootObjects().isEmpty()) return 1;
  auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
  if (!window) return 1;
  if (parser.isSet(shot)) shootWhenSettled(window, parser.value(shot));
  return QGuiApplication::exec();
}
