// One page, one window.
#include "views/AboutWindow.h"

#include <QQmlEngine>
#include <QQuickView>

#include "views/about/AboutPresenter.h"

namespace quillmere {

std::unique_ptr<QQuickWindow> makeAboutWindow(const QString& version) {
  auto view = std::make_unique<QQuickView>();
  view->engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
  auto* presenter = new AboutPresenter(version, view.get());
  view->setInitialProperties({{QStringLiteral("presenter"), QVariant::fromValue(presenter)}});
  view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Quillmere/Views/AboutPanel.qml")));
  view->setFlags(Qt::Dialog);
  view->setTitle(AboutPresenter::tr("About quillmere"));
  view->setMinimumSize(view->size());
  view->setMaximumSize(view->size());
  return view;
}

}  // namespace quillmere
