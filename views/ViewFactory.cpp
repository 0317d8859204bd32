// Makes the program's windows with everything that stands behind them.
#include "views/ViewFactory.h"

#include <QtQml/qqmlextensionplugin.h>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>
#include <QThreadPool>
#include <cstdlib>
#include <memory>
#include <type_traits>
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

/// A window of its own engine around one component of the views' module, whose size is the window's, or without a size
/// the other way round. What `makePresenter` makes lives as long as the window.
template <typename MakePresenter>
std::unique_ptr<QQuickView> makeWindow(Workspace& workspace, const QString& component, const QSize& size,
                                       const MakePresenter& makePresenter) {
  auto view = std::make_unique<QQuickView>();
  if (frames().isDebugEnabled()) traceFrames(*view);
  auto* engine = view->engine();
  engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
  const QUrl source(QStringLiteral("qrc:/qt/qml/Quillmere/Views/") + component);
  // The types are read on a thread of the engine's, beside what is made ready here; whoever needs them then waits for
  // the rest.
  const QQmlComponent reading(engine, source, QQmlComponent::Asynchronous);

  auto* icons = new AppIconProvider(workspace);
  engine->addImageProvider(QLatin1StringView(AppIconProvider::id), icons);
  icons->waitForPicture();
  QObject::connect(
      view.get(), &QQuickWindow::frameSwapped, view.get(), [icons] { icons->pictureStands(); },
      Qt::SingleShotConnection);
  view->setColor(toColor(design::colour::canvasBG));
  // The view takes its scene down before its children.
  auto* presenter = makePresenter().release();
  presenter->setParent(view.get());
  QObject::connect(view.get(), &QWindow::visibleChanged, presenter,
                   &std::remove_pointer_t<decltype(presenter)>::setVisible);
  QVariantMap properties{{QStringLiteral("presenter"), QVariant::fromValue(presenter)}};
  if (size.isValid()) {
    // From the start, or everything would be laid out twice.
    properties.insert({{QStringLiteral("width"), size.width()}, {QStringLiteral("height"), size.height()}});
    view->resize(size);
  }
  view->setResizeMode(size.isValid() ? QQuickView::SizeRootObjectToView : QQuickView::SizeViewToRootObject);
  view->setInitialProperties(properties);
  Tokens::loadFonts();
  view->setSource(source);
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
  auto view = makeWindow(services_.desktop.workspace(), QStringLiteral("MixerPanel.qml"), {}, [this] {
    return std::make_unique<MixerPanelPresenter>(services_.state, services_.runtime, services_.settings,
                                                 services_.intents);
  });
  view->setTitle(QStringLiteral("quillmere"));
  return view;
}

std::unique_ptr<QQuickWindow> ViewFactory::makeMainWindow() {
  auto view = makeWindow(services_.desktop.workspace(), QStringLiteral("MainWindow.qml"), mainWindowSize,
                         [this] { return std::make_unique<MainWindowPresenter>(services_); });
  view->setTitle(QStringLiteral("quillmere"));
  view->setMinimumSize(mainWindowMinimum);
  return view;
}

std::unique_ptr<QQuickWindow> ViewFactory::makeOnboarding() {
  auto view = makeWindow(services_.desktop.workspace(), QStringLiteral("OnboardingWindow.qml"), onboardingSize,
                         [this] { return std::make_unique<OnboardingPresenter>(services_); });
  view->setTitle(QCoreApplication::translate("OnboardingWindow", "Welcome to quillmere"));
  view->setMinimumSize(onboardingMinimum);
  view->setMaximumSize(onboardingSize);
  return view;
}

void ViewFactory::showSection(QQuickWindow& mainWindow, const std::string& section) {
  if (auto* presenter = mainWindow.findChild<MainWindowPresenter*>(QString(), Qt::FindDirectChildrenOnly)) {
    presenter->show(QString::fromStdString(section));
  }
}

}  // namespace quillmere
