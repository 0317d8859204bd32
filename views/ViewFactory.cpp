// Makes the program's windows with everything that stands behind them.
#include "views/ViewFactory.h"

#include <QtQml/qqmlextensionplugin.h>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QQmlEngine>
#include <QQuickView>
#include <QThreadPool>
#include <cstdlib>
#include <memory>
#include <utility>

#include "integrations/DesktopServices.h"
#include "views/design/Tokens.h"
#include "views/mainwindow/MainWindowPresenter.h"
#include "views/onboarding/OnboardingPresenter.h"
#include "views/popover/MixerPanelPresenter.h"
#include "views/shared/AppIconProvider.h"

Q_IMPORT_QML_PLUGIN(Quillmere_DesignPlugin)
Q_IMPORT_QML_PLUGIN(Quillmere_ViewsPlugin)

namespace quillmere {

namespace {

constexpr QSize mainWindowSize(1120, 720);
constexpr QSize mainWindowMinimum(1040, 660);
constexpr QSize onboardingSize(640, 600);
/// Below its own size the first run scrolls.
constexpr QSize onboardingMinimum(400, 240);

/// What frames cost, for who asks: QT_LOGGING_RULES="app.quillmere.frames.debug=true".
Q_LOGGING_CATEGORY(frames, "app.quillmere.frames", QtInfoMsg)

/// A line for each frame: the time from taking over the items' changes to the picture's hand-over.
void traceFrames(QQuickWindow& window) {
  const auto since = std::make_shared<QElapsedTimer>();
  // Both come from the thread that draws.
  QObject::connect(
      &window, &QQuickWindow::beforeSynchronizing, &window, [since] { since->start(); }, Qt::DirectConnection);
  QObject::connect(
      &window, &QQuickWindow::frameSwapped, &window,
      [since] {
        if (since->isValid()) qCDebug(frames, "frame %lld us", static_cast<long long>(since->nsecsElapsed() / 1000));
      },
      Qt::DirectConnection);
}

/// A window of its own engine around one component of the views' module. `presenter` lives as long as the window.
template <typename Presenter>
std::unique_ptr<QQuickView> makeWindow(Workspace& workspace, const QString& component,
                                       std::unique_ptr<Presenter> presenter) {
  auto view = std::make_unique<QQuickView>();
  if (frames().isDebugEnabled()) traceFrames(*view);
  view->engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
  view->engine()->addImageProvider(QLatin1StringView(AppIconProvider::id), new AppIconProvider(workspace));
  view->setColor(toColor(design::colour::canvasBG));
  view->setInitialProperties({{QStringLiteral("presenter"), QVariant::fromValue(presenter.get())}});
  QObject::connect(view.get(), &QWindow::visibleChanged, presenter.get(), &Presenter::setVisible);
  // The view takes its scene down before its children.
  presenter.release()->setParent(view.get());
  view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Quillmere/Views/") + component));
  if (view->status() != QQuickView::Ready) {
    // The scenes are compiled in: this is a mistake of ours, not of the machine.
    for (const auto& error : view->errors()) qCritical("%s", qPrintable(error.toString()));
    std::abort();
  }
  return view;
}

}  // namespace

ViewFactory::ViewFactory(ViewServices services) : services_(std::move(services)) {}

// Pictures that are still being looked up read the desktop's workspace.
ViewFactory::~ViewFactory() { QThreadPool::globalInstance()->waitForDone(); }

std::unique_ptr<QQuickWindow> ViewFactory::makePopover() {
  auto view = makeWindow(
      services_.desktop.workspace(), QStringLiteral("MixerPanel.qml"),
      std::make_unique<MixerPanelPresenter>(services_.state, services_.runtime, services_.settings, services_.intents));
  view->setResizeMode(QQuickView::SizeViewToRootObject);
  view->setTitle(QStringLiteral("quillmere"));
  return view;
}

std::unique_ptr<QQuickWindow> ViewFactory::makeMainWindow() {
  auto view = makeWindow(services_.desktop.workspace(), QStringLiteral("MainWindow.qml"),
                         std::make_unique<MainWindowPresenter>(services_));
  view->setResizeMode(QQuickView::SizeRootObjectToView);
  view->setTitle(QStringLiteral("quillmere"));
  view->setMinimumSize(mainWindowMinimum);
  view->resize(mainWindowSize);
  return view;
}

std::unique_ptr<QQuickWindow> ViewFactory::makeOnboarding() {
  auto view = makeWindow(services_.desktop.workspace(), QStringLiteral("OnboardingWindow.qml"),
                         std::make_unique<OnboardingPresenter>(services_));
  view->setResizeMode(QQuickView::SizeRootObjectToView);
  view->setTitle(QCoreApplication::translate("OnboardingWindow", "Welcome to quillmere"));
  view->setMinimumSize(onboardingMinimum);
  view->setMaximumSize(onboardingSize);
  view->resize(onboardingSize);
  return view;
}

void ViewFactory::showSection(QQuickWindow& mainWindow, const std::string& section) {
  if (auto* presenter = mainWindow.findChild<MainWindowPresenter*>(QString(), Qt::FindDirectChildrenOnly)) {
    presenter->show(QString::fromStdString(section));
  }
}

}  // namespace quillmere
