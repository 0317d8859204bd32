// Shows a window of the program in one of the states worth looking at: quillmere-preview [scene].
// With --shots FOLDER saves pictures of all scenes (or of those named) and ends.
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QQuickWindow>
#include <cstdio>
#include <memory>

#include "state/ViewSettings.h"
#include "views/AboutWindow.h"
#include "views/Mnemonics.h"
#include "views/Translation.h"
#include "views/ViewFactory.h"
#include "views/design/Appearance.h"
#include "views/preview/PreviewMachine.h"
#include "views/preview/PreviewScenes.h"

namespace {

using namespace quillmere;

/// The real pointer may stand anywhere, within the window too where that is as large as the screen: pictures show what
/// the scenes' own events do.
class NoPointer : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject*, QEvent* event) override {
    if (!event->spontaneous()) return false;
    return event->type() == QEvent::Enter || event->type() == QEvent::MouseMove || event->type() == QEvent::HoverMove;
  }
};

std::unique_ptr<QQuickWindow> make(ViewFactory& factory, PreviewScene::Window window) {
  switch (window) {
    case PreviewScene::Window::popover:
      return factory.makePopover();
    case PreviewScene::Window::main:
      return factory.makeMainWindow();
    case PreviewScene::Window::onboarding:
      return factory.makeOnboarding();
    case PreviewScene::Window::about:
      return makeAboutWindow(QStringLiteral("1.9.9"));
  }
  return nullptr;
}

std::unique_ptr<QQuickWindow> open(const PreviewScene& scene, PreviewMachine& box) {
  scene.fill(box);
  ViewIntents intents;
  intents.quit = [] { QCoreApplication::quit(); };
  ViewFactory factory(
      {box.state, box.runtime, std::make_shared<ViewSettings>(*box.state), box.services, std::move(intents), "1.9.9"});
  auto window = make(factory, scene.window);
  if (scene.window == PreviewScene::Window::popover) window->setFlags(Qt::Tool | Qt::FramelessWindowHint);
  window->show();
  window->requestActivate();
  return window;
}

/// Lets the window draw for a while: animations end, pictures arrive, and so do answers from the background.
void settle(QQuickWindow& window, PreviewMachine& box, int millis) {
  QElapsedTimer clock;
  clock.start();
  while (clock.elapsed() < millis) {
    window.update();
    box.time.runUntilIdle();
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
  }
}

/// How pictures are taken.
struct Look {
  QDir folder;
  /// Before the scene's name in the file's: "de-", nothing for English.
  QString prefix;
  bool isSmallest = false;
};

bool shoot(const PreviewScene& scene, const Look& look) {
  constexpr int settleMillis = 700;
  Appearance::shared().setWantsContrast(false);
  PreviewMachine box;
  NoPointer filter;
  const auto window = open(scene, box);
  window->installEventFilter(&filter);
  if (look.isSmallest && scene.window == PreviewScene::Window::main) window->resize(window->minimumSize());
  settle(*window, box, settleMillis);
  if (scene.act) {
    scene.act(*window);
    // Tool tips wait before they come.
    settle(*window, box, 2 * settleMillis);
  }
  const auto scale = window->effectiveDevicePixelRatio();
  const auto name = look.prefix + QString::fromStdString(scene.name);
  const auto file = look.folder.filePath(QStringLiteral("%1@%2x.png").arg(name).arg(scale));
  const bool saved = window->grabWindow().save(file);
  std::printf("%s %s\n", saved ? "saved" : "could not save", qPrintable(file));
  return saved;
}

}  // namespace

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  QGuiApplication::setApplicationName("quillmere-preview");
  QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
  QCommandLineParser parser;
  const QCommandLineOption shots("shots", "Save pictures and end.", "folder");
  parser.addOption(shots);
  const QCommandLineOption language("language", "Which texts to show.", "language", "en");
  parser.addOption(language);
  const QCommandLineOption smallest("smallest", "Pictures of the main window as small as it goes.");
  parser.addOption(smallest);
  parser.addPositionalArgument("scenes", "Which scenes; without --shots the first one is shown.");
  parser.addHelpOption();
  parser.process(application);
  const auto shown = installTranslation({parser.value(language).toStdString()});

  ignoreMnemonics();

  const auto names = parser.positionalArguments();
  std::vector<PreviewScene> chosen;
  for (const auto& scene : previewScenes()) {
    if (names.isEmpty() || names.contains(QString::fromStdString(scene.name))) chosen.push_back(scene);
  }
  if (chosen.empty()) {
    std::fputs("no such scene; there are:\n", stderr);
    for (const auto& scene : previewScenes()) std::fprintf(stderr, "  %s\n", scene.name.c_str());
    return 64;
  }
  if (parser.isSet(shots)) {
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const auto prefix = shown == "en" ? QString() : QString::fromStdString(shown) + '-';
    const Look look{QDir(parser.value(shots)), prefix, parser.isSet(smallest)};
    look.folder.mkpath(".");
    bool allSaved = true;
    for (const auto& scene : chosen) allSaved = shoot(scene, look) && allSaved;
    return allSaved ? 0 : 1;
  }
  PreviewMachine box;
  const auto window = open(chosen.front(), box);
  return QGuiApplication::exec();
}
