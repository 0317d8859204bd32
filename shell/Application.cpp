// The program from its start to its end.
#include "shell/Application.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLoggingCategory>
#include <QWindow>
#include <QtPlugin>
#include <chrono>

#include "engine/DriverClient.h"
#include "engine/ProcessTapEngine.h"
#include "platform/Machine.h"
#include "platform/SingleInstance.h"
#include "platform/Updater.h"
#include "runtime/ThreadPoolExecutor.h"
#include "shell/BrandIconImage.h"
#include "shell/PopoverController.h"
#include "shell/QtMainExecutor.h"
#include "shell/QtWindowSystem.h"
#include "shell/QuillmereAppDelegate.h"
#include "shell/StatusBarController.h"
#include "shell/StatusItem.h"
#include "shell/TerminationSignals.h"
#include "shell/TrayWatch.h"
#include "shell/VersionOrder.h"
#include "state/AppState.h"
#include "views/ViewFactory.h"

namespace quillmere {

namespace {

/// The monitors' polls and the engine calls are short; two threads keep one slow answer from holding up the rest.
constexpr std::size_t backgroundThreads = 2;
/// Panels may come later than what starts with the session. After this the main window stands in for the tray.
constexpr auto trayPatience = std::chrono::seconds(10);

constexpr const char* mainWindow = "main";

Q_LOGGING_CATEGORY(category, "app.quillmere.shell", QtInfoMsg)

/// What the program was asked for when it was started.
struct LaunchOptions {
  bool inBackground = false;
};

LaunchOptions parseArguments() {
  QCommandLineParser parser;
  const QCommandLineOption background(
      QStringLiteral("background"),
      QCoreApplication::translate("Application", "Start into the tray without opening a window, as at login."));
  parser.addOption(background);
  parser.addHelpOption();
  parser.addVersionOption();
  parser.process(*QCoreApplication::instance());
  return {parser.isSet(background)};
}

/// Everything the user meets, over a state that stands. Lives as long as the event loop.
class Shell {
 public:
  Shell(const std::shared_ptr<AppState>& state, const Runtime& runtime, Machine& machine, SingleInstance& instance,
        const MakeViews& makeViews)
      : state_(state),
        runtime_(runtime),
        machine_(machine),
        instance_(instance),
        makeViews_(makeViews),
        windows_(runtime),
        controller_(*state, runtime, windows_, *machine.workspace, nullptr, statusBarIntents()),
        popover_(
            runtime, [this] { return views().makePopover(); },
            [this] { return statusItem_ ? statusItem_->anchor() : std::nullopt; }),
        delegate_(runtime, windows_, launchSteps()) {
    auto& main = windows_.add(mainWindow, [this] { return views().makeMainWindow(); });
    QObject::connect(&main, &Scene::shown, &windows_,
                     [this] { delegate_.handleMainWindowAppear(state_->hasCompletedOnboarding().get()); });
    // When the list first stands is the start's other half, beside the status item.
    subscription_ = state_->apps().observe(
        [](const std::vector<AudioApp>& apps) { qCDebug(category, "%zu applications listed", apps.size()); });
    controller_.observeMenu([this] {
      if (statusItem_) statusItem_->rebuildMenu();
    });
  }

  void start(const LaunchOptions& options) {
    instance_.onActivationRequested([this] { openMainWindow(); });
    if (!delegate_.applicationDidFinishLaunching()) return;
    if (options.inBackground) {
      runtime_.main.postAfter(trayPatience, [this] {
        if (!trayWatch_.isAvailable()) windows_.open(mainWindow);
      });
      return;
    }
    // After the status item, which is what people look for first.
    runtime_.main.post([this] { windows_.open(mainWindow); });
  }

 private:
  void openMainWindow() {
    windows_.open(mainWindow);
    windows_.activate();
  }

  /// What the first window needs costs more than all the rest of the program: it comes with that window.
  const Views& views() {
    if (!views_) {
      QApplication::setWindowIcon(QIcon(BrandIconImage::dock(128, 1.0)));
      views_ = makeViews_(state_, runtime_, machine_, viewIntents());
    }
    return *views_;
  }

  ViewIntents viewIntents() {
    ViewIntents intents;
    intents.openMainWindow = [this] {
      popover_.close();
      openMainWindow();
    };
    intents.quit = [this] { windows_.terminate(); };
    return intents;
  }

  StatusBarIntents statusBarIntents() {
    StatusBarIntents intents;
    // The main window has no sections yet: every request shows the one page there is.
    intents.openMainWindow = [this](const std::optional<std::string>&) { openMainWindow(); };
    intents.togglePopover = [this] { popover_.toggle(); };
    return intents;
  }

  LaunchSteps launchSteps() {
    LaunchSteps steps;
    steps.acquireInstance = [this] { return instance_.acquire(); };
    // No update service is known: the menu leads to the download page.
    steps.startUpdater = [] {};
    steps.createStatusItem = [this] { createStatusItem(); };
    return steps;
  }

  void createStatusItem() {
    QObject::connect(&trayWatch_, &TrayWatch::available, &trayWatch_, [this] {
      StatusItemIntents intents;
      intents.menu = [this] { return controller_.rebuildMenu(); };
      intents.perform = [this](const StatusMenuEntry& entry) { controller_.perform(entry); };
      intents.primaryAction = [this] { controller_.handleClick(); };
      intents.scroll = [this](int angleDelta) { controller_.handleScroll(angleDelta); };
      statusItem_ = std::make_unique<StatusItem>(std::move(intents));
      statusItem_->show();
    });
    trayWatch_.start();
    if (trayWatch_.isAvailable()) return;
    Logger(runtime_.log, "StatusItem").standard("no tray is there yet; the main window stands in until one comes");
  }

  std::shared_ptr<AppState> state_;
  Subscription subscription_;
  Runtime runtime_;
  Machine& machine_;
  SingleInstance& instance_;
  MakeViews makeViews_;
  std::optional<Views> views_;
  QtWindowSystem windows_;
  StatusBarController controller_;
  TrayWatch trayWatch_;
  std::unique_ptr<StatusItem> statusItem_;
  PopoverController popover_;
  QuillmereAppDelegate delegate_;
};

}  // namespace

int runApplication(int argc, char** argv, const Host& host) {
  QCoreApplication::setApplicationName(QStringLiteral("quillmere"));
  QCoreApplication::setApplicationVersion(
      QString::fromUtf8(appVersion().data(), static_cast<int>(appVersion().size())));
  QGuiApplication::setDesktopFileName(QStringLiteral("app.quillmere.host"));
  const QApplication application(argc, argv);
  const auto options = parseArguments();
  QApplication::setQuitOnLastWindowClosed(false);

  const auto log = host.makeLogSink();
  SystemClocks clocks;
  QtMainExecutor main;
  ThreadPoolExecutor background(backgroundThreads);
  const Runtime runtime{main, background, clocks, *log, makeThreadSerialQueue};

  Machine machine = host.makeMachine(runtime);
  ProcessTapEngine engine(*machine.audio, runtime);
  engine.install();
  DriverClient driver(engine, background);
  driver.install();
  auto state = AppState::create(machine, runtime, driver);
  AppState::installShared(state);
  const auto instance = host.makeSingleInstance(runtime);

  int exitCode = 0;
  {
    Shell shell(state, runtime, machine, *instance, host.makeViews);
    const TerminationSignals signals([] { QCoreApplication::exit(0); });
    main.post([&shell, &options] { shell.start(options); });
    exitCode = QApplication::exec();
  }
  // The running streams hold the state: they go with the queues they wait in, before what the state uses.
  AppState::installShared(nullptr);
  state.reset();
  background.shutDown();
  main.shutDown();
  return exitCode;
}

}  // namespace quillmere
