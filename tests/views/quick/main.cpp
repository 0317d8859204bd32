// Runs the Qt Quick tests on the compiled-in modules.
#include <QtQml/qqmlextensionplugin.h>
#include <QQmlEngine>
#include <QtQuickTest>

#include "views/design/Appearance.h"

Q_IMPORT_QML_PLUGIN(Quillmere_DesignPlugin)

/// The desktop's settings, for tests to change.
class DesktopSettings : public QObject {
  Q_OBJECT

 public:
  Q_INVOKABLE static void reduceMotion(bool reduces) { quillmere::Appearance::shared().setReducesMotion(reduces); }
};

class Setup : public QObject {
  Q_OBJECT

 public slots:
  void qmlEngineAvailable(QQmlEngine* engine) {
    engine->addImportPath("qrc:/qt/qml");
    qmlRegisterSingletonInstance("Quillmere.Test", 1, 0, "DesktopSettings", &settings_);
  }

 private:
  DesktopSettings settings_;
};

QUICK_TEST_MAIN_WITH_SETUP(quillmere, Setup)

#include "main.moc"
