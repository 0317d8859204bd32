// Runs the Qt Quick tests on the compiled-in modules.
#include <QtQml/qqmlextensionplugin.h>
#include <QQmlEngine>
#include <QtQuickTest>

#include "DesktopWishes.h"

Q_IMPORT_QML_PLUGIN(Quillmere_DesignPlugin)

class Setup : public QObject {
  Q_OBJECT

 public Q_SLOTS:
  void qmlEngineAvailable(QQmlEngine* engine) {
    engine->addImportPath("qrc:/qt/qml");
    qmlRegisterSingletonInstance("Quillmere.Test", 1, 0, "DesktopWishes", &wishes_);
  }

 private:
  quillmere::DesktopWishes wishes_;
};

QUICK_TEST_MAIN_WITH_SETUP(quillmere, Setup)

#include "main.moc"
