// Runs the toolkit's loop.
#include "app/oneprocess/QtMainLoop.h"

#include <QMetaObject>
#include <cstdlib>

#include "core/Product.h"

namespace quillmere {

namespace {

/// Before the application object, which reads them.
int& named(int& argc) {
  QCoreApplication::setApplicationName(QStringLiteral("quillmere"));
  const auto version = appVersion();
  QCoreApplication::setApplicationVersion(QString::fromUtf8(version.data(), static_cast<qsizetype>(version.size())));
  return argc;
}

}  // namespace

QtMainLoop::QtMainLoop(int& argc, char** argv) : application_(named(argc), argv) {
  // Closing all windows leaves the status item running.
  QApplication::setQuitOnLastWindowClosed(false);
}

QtMainLoop::~QtMainLoop() = default;

void QtMainLoop::run() {
  QApplication::exec();
  executor_.shutDown();
}

void QtMainLoop::stop() {
  // The loop may not have begun, and it is the loop that this ends.
  QMetaObject::invokeMethod(&application_, [] { QCoreApplication::exit(EXIT_SUCCESS); }, Qt::QueuedConnection);
}

}  // namespace quillmere
