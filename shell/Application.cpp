// The program from its start to its end.
#include "shell/Application.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "engine/DriverClient.h"
#include "engine/ProcessTapEngine.h"
#include "integrations/ReleaseUpdater.h"
#include "platform/Channel.h"
#include "platform/Machine.h"
#include "platform/ProgramWindows.h"
#include "platform/SessionWatch.h"
#include "platform/SingleInstance.h"
#include "platform/StatusItem.h"
#include "platform/Updater.h"
#include "remote/SeamVersion.h"
#include "runtime/LoopExecutor.h"
#include "runtime/MainLoop.h"
#include "runtime/ThreadPoolExecutor.h"
#include "shell/LaunchOptions.h"
#include "shell/QuillmereAppDelegate.h"
#include "shell/StatusBarController.h"
#include "shell/StatusItemPresenter.h"
#include "shell/WindowsProcess.h"
#include "state/AppState.h"

namespace quillmere {

namespace {

/// The monitors' polls and the engine calls are short; two threads keep one slow answer from holding up the rest.
constexpr std::size_t backgroundThreads = 2;
/// A panel that restarts is back by then. After this a tray of the old kind is looked for.
constexpr auto panelPatience = std::chrono::seconds(3);
/// Panels may come later than what starts with the session. After this the main window stands in for the tray.
constexpr auto trayPatience = std::chrono::seconds(10);

/// The loop of a program that needs no toolkit.
class OwnLoop final : public MainLoop {
 public:
  [[nodiscard]] Executor& executor() override { return executor_; }
  void run() override { executor_.run(); }
  void stop() override { executor_.stop(); }

 private:
  LoopExecutor executor_;
};

/// Makes the windows once it is known what they may ask for.
using MakeWindows = std::function<std::unique_ptr<ProgramWindows>(WindowsIntents intents)>;

/// Everything the user meets, over a state that stands. Lives as long as the main loop runs.
class Shell {
 public:
  Shell(AppState& state, const Runtime& runtime, SingleInstance& instance, StatusItem& item,
        const MakeWindows& makeWindows, std::function<void()> startUpdater, const std::function<void()>& terminate)
      : state_(state),
        startUpdater_(std::move(startUpdater)),
        runtime_(runtime),
        instance_(instance),
        item_(item),
        windows_(makeWindows(windowsIntents(terminate))),
        controller_(state, runtime, *windows_, statusBarIntents()),
        presenter_(item_, controller_),
        delegate_(runtime, *windows_, launchSteps()) {
    if (auto* tray = windows_->oldTray()) oldPresenter_.emplace(*tray, controller_);
    // When the list first stands is the start's other half, beside the status item.
    listed_ = state_.apps().observe([this](const std::vector<AudioApp>& apps) {
      Logger(runtime_.log, "Application").info(std::to_string(apps.size()) + " applications listed");
      listed_.cancel();
    });
    instance_.onActivationRequested([this](const ActivationRequest& request) { openMainWindow(request); });
    controller_.observeMenu([this] {
      presenter_.refresh();
      if (oldPresenter_) oldPresenter_->refresh();
    });
  }

  /// `wish` is absent for a start into the background, and where others will say what to show.
  void start(const std::optional<ActivationRequest>& wish) {
    if (!delegate_.applicationDidFinishLaunching()) return;
    if (!wish) {
      runtime_.main.postAfter(trayPatience, [this] {
        if (!hasIcon()) windows_->open(ProgramWindows::mainWindow);
      });
      return;
    }
    // After the status item, which is what people look for first.
    runtime_.main.post([this, wish = *wish] { windows_->open(ProgramWindows::mainWindow, wish); });
  }

  /// The windows turned out not to be this program's other half.
  [[nodiscard]] bool isBroken() const { return isBroken_; }

 private:
  [[nodiscard]] bool hasIcon() {
    const auto* tray = windows_->oldTray();
    return item_.isAvailable() || (tray != nullptr && tray->isAvailable());
  }

  void openMainWindow(const ActivationRequest& request) {
    windows_->open(ProgramWindows::mainWindow, request);
    windows_->activate();
  }

  WindowsIntents windowsIntents(const std::function<void()>& terminate) {
    WindowsIntents intents;
    intents.openMainWindow = [this](const ActivationRequest& request) { openMainWindow(request); };
    intents.mainWindowShown = [this] { delegate_.handleMainWindowAppear(state_.hasCompletedOnboarding().get()); };
    intents.finishOnboarding = [this] { delegate_.finishOnboarding(); };
    intents.halvesDiffer = [this, terminate](const std::string& version) {
      const auto problem = "this is version " + seamVersion() +
                           ", and the program that draws its windows says to be of " +
                           (version.empty() ? "none" : version) + ": it is not installed whole";
      Logger(runtime_.log, "Application").error(problem);
      std::cerr << "quillmere: " << problem << '\n';
      isBroken_ = true;
      terminate();
    };
    intents.terminate = terminate;
    return intents;
  }

  StatusBarIntents statusBarIntents() {
    StatusBarIntents intents;
    intents.openMainWindow = [this](const ActivationRequest& request) { openMainWindow(request); };
    intents.togglePopover = [this](const StatusItemActivation& activation) { windows_->togglePopover(activation); };
    return intents;
  }

  LaunchSteps launchSteps() {
    LaunchSteps steps;
    // It was, before there was a machine.
    steps.acquireInstance = [this] { return instance_.acquire(std::nullopt); };
    steps.startUpdater = startUpdater_;
    steps.createStatusItem = [this] { createStatusItem(); };
    return steps;
  }

  void createStatusItem() {
    item_.onAvailabilityChanged([this](bool isAvailable) { panelChanged(isAvailable); });
    presenter_.show();
    if (oldPresenter_) oldPresenter_->show();
  }

  /// The old kind of tray is for desktops whose panel knows no other.
  void panelChanged(bool isAvailable) {
    if (panelTimer_ != 0) runtime_.main.cancelTimer(std::exchange(panelTimer_, 0));
    if (isAvailable) {
      windows_->setOldTrayWanted(false);
      return;
    }
    panelTimer_ = runtime_.main.postAfter(panelPatience, [this] {
      panelTimer_ = 0;
      Logger(runtime_.log, "StatusItem").standard("no panel shows status items; looking for a tray of the old kind");
      windows_->setOldTrayWanted(true);
    });
  }

  AppState& state_;
  std::function<void()> startUpdater_;
  Subscription listed_;
  Runtime runtime_;
  SingleInstance& instance_;
  StatusItem& item_;
  std::unique_ptr<ProgramWindows> windows_;
  StatusBarController controller_;
  StatusItemPresenter presenter_;
  std::optional<StatusItemPresenter> oldPresenter_;
  QuillmereAppDelegate delegate_;
  TimerID panelTimer_ = 0;
  bool isBroken_ = false;
};

}  // namespace

int runApplication(int argc, char** argv, const Host& host) {
  int exitCode = EXIT_SUCCESS;
  const auto options = parseArguments(argc, argv, std::cout, std::cerr, exitCode);
  if (!options) return exitCode;
  std::optional<ActivationRequest> wish = ActivationRequest{options->section, host.takeActivationToken()};
  if (options->inBackground) wish.reset();

  const auto log = host.makeLogSink();
  SystemClocks clocks;
  const std::unique_ptr<MainLoop> loop = host.makeMainLoop ? host.makeMainLoop() : std::make_unique<OwnLoop>();
  Executor& main = loop->executor();
  ThreadPoolExecutor background(backgroundThreads);
  const Runtime runtime{main, background, clocks, *log, makeThreadSerialQueue};
  // First of all: what plays is in the hands of the instance that runs.
  const auto instance = host.makeSingleInstance(runtime);
  if (!instance->acquire(wish)) {
    Logger(*log, "Application").standard("quillmere runs already");
    return EXIT_SUCCESS;
  }
  std::unique_ptr<WindowsLauncher> launcher;
  if (!host.makeWindows) {
    launcher = host.makeWindowsLauncher(runtime);
    if (!launcher) return EXIT_FAILURE;
    // It starts while this program looks at the sound, and draws the main window as soon as that is asked for.
    if (wish) launcher->prepare();
  }

  Machine machine = host.makeMachine(runtime);
  ProcessTapEngine engine(*machine.audio, runtime);
  engine.install();
  DriverClient driver(engine, background);
  driver.install();
  std::optional<ReleaseUpdater> updater;
  std::unique_ptr<Updater> hostsUpdater;
  if (machine.releaseFeed) {
    updater.emplace(*machine.releaseFeed, *machine.defaults, *machine.workspace, runtime);
  }
  auto state = AppState::create(machine, runtime, driver);
  if (updater) state->useUpdater(*updater);
  AppState::installShared(state);
  {
    const auto item = host.makeStatusItem(runtime);
    const auto terminate = [&loop] { loop->stop(); };
    const MakeWindows makeWindows = [&](WindowsIntents intents) -> std::unique_ptr<ProgramWindows> {
      if (host.makeWindows) return host.makeWindows(state, runtime, std::move(intents));
      return std::make_unique<WindowsProcess>(*launcher, *state, runtime, std::move(intents));
    };
    // Where neither the host nor a release feed knows of newer versions the menu leads to the download page.
    const auto startUpdater = [&] {
      if (updater) updater->start();
      if (host.makeUpdater) hostsUpdater = host.makeUpdater(machine, updater ? &*updater : nullptr);
      if (hostsUpdater) state->useUpdater(*hostsUpdater);
    };
    Shell shell(*state, runtime, *instance, *item, makeWindows, startUpdater, terminate);
    const auto session = host.makeSessionWatch ? host.makeSessionWatch(runtime) : nullptr;
    if (session) {
      session->onEndRequested(terminate);
      session->onEnded([terminate, &log] {
        Logger(*log, "Application").standard("the desktop session has ended");
        terminate();
      });
    }
    // Where the session bus has started the program, what it asks is on its way, with the token that belongs to it.
    if (options->isActivated) wish.reset();
    main.post([&shell, &wish] { shell.start(wish); });
    loop->run();
    if (shell.isBroken()) exitCode = EXIT_FAILURE;
  }
  // The running streams hold the state: they go with the queues they wait in, before what the state uses.
  AppState::installShared(nullptr);
  state.reset();
  background.shutDown();
  return exitCode;
}

}  // namespace quillmere
