// Runs the pages' Qt Quick tests on the compiled-in modules.
#include <QtQml/qqmlextensionplugin.h>
#include <QBuffer>
#include <QImage>
#include <QQmlEngine>
#include <QTemporaryDir>
#include <QtQuickTest>

#include "Bench.h"
#include "DesktopWishes.h"
#include "FormsBench.h"
#include "views/Mnemonics.h"
#include "views/Translation.h"
#include "views/shared/AppIconProvider.h"

Q_IMPORT_QML_PLUGIN(Quillmere_DesignPlugin)
Q_IMPORT_QML_PLUGIN(Quillmere_ViewsPlugin)

/// What the desktop has icons for.
class Icons : public QObject {
  Q_OBJECT

 public:
  explicit Icons(quillmere::MemoryWorkspace& workspace) : workspace_(workspace) {}
  Q_INVOKABLE void list(const QString& bundleID) {
    QImage image(32, 32, QImage::Format_ARGB32);
    image.fill(Qt::red);
    QBuffer bytes;
    image.save(&bytes, "PNG");
    const auto* begin = reinterpret_cast<const std::byte*>(bytes.data().constData());
    workspace_.setIcon(bundleID.toStdString(), quillmere::EncodedIcon{{begin, begin + bytes.size()}});
  }

 private:
  quillmere::MemoryWorkspace& workspace_;
};

class Setup : public QObject {
  Q_OBJECT

 public Q_SLOTS:
  static void applicationAvailable() {
    quillmere::installTranslation({});
    quillmere::ignoreMnemonics();
  }
  void qmlEngineAvailable(QQmlEngine* engine) {
    engine->addImportPath("qrc:/qt/qml");
    engine->addImageProvider(quillmere::AppIconProvider::id, new quillmere::AppIconProvider(workspace_));
    // The only application here that has an icon.
    const auto picture = folder_.filePath("icon.png");
    QImage icon(64, 64, QImage::Format_ARGB32);
    icon.fill(Qt::red);
    icon.save(picture);
    workspace_.install("org.example.pictured", "Pictured", "/apps/pictured");
    workspace_.setIcon("org.example.pictured", quillmere::FileIcon{picture.toStdString()});
    bench_.stop();
    forms_.stop();
    qmlRegisterSingletonInstance("Quillmere.Test", 1, 0, "Bench", &bench_);
    qmlRegisterSingletonInstance("Quillmere.Test", 1, 0, "Forms", &forms_);
    qmlRegisterSingletonInstance("Quillmere.Test", 1, 0, "DesktopWishes", &wishes_);
    qmlRegisterSingletonInstance("Quillmere.Test", 1, 0, "Icons", &icons_);
  }

 private:
  quillmere::MemoryWorkspace workspace_;
  Icons icons_{workspace_};
  quillmere::Bench bench_;
  quillmere::FormsBench forms_;
  quillmere::DesktopWishes wishes_;
  QTemporaryDir folder_;
};

QUICK_TEST_MAIN_WITH_SETUP(quillmere_pages, Setup)

#include "main.moc"
