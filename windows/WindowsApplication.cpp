// Orders in, events out.
#include "windows/WindowsApplication.h"

#include <fontconfig/fontconfig.h>

#include <QApplication>
#include <QTimer>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "core/Product.h"
#include "remote/MessageType.h"
#include "remote/RemoteState.h"
#include "remote/RemoteStatusItem.h"
#include "remote/SeamVersion.h"
#include "remote/WindowMessages.h"
#include "runtime/ThreadPoolExecutor.h"
#include "views/DesktopFont.h"
#include "views/DesktopSettings.h"
#include "views/IconThemes.h"
#include "views/Mnemonics.h"
#include "views/Translation.h"
#include "windows/DialogApplicationChooser.h"
#include "windows/DisplayChoice.h"
#include "windows/Launch.h"
#include "windows/LayerShell.h"
#include "windows/OldTrayItem.h"
#include "windows/PlacedStage.h"
#include "windows/ProgramScenes.h"
#include "windows/QtMainExecutor.h"
#include "windows/Renderer.h"
#include "windows/WindowSight.h"

namespace quillmere {

namespace {

using nlohmann::json;

/// What brings a window to the front on desktops that ask for a reason, for one wish: the toolkit takes it with the
/// next window, and what it has not taken is not for a later one. A desktop that waits for what it has launched with
/// it, with a busy pointer, learns at the end that it is there, whatever became of the wish.
class Reason {
 public:
  explicit Reason(const json& message) : token_(message.value("token", std::string())) {
    if (token_.empty()) {
      qunsetenv(variable);
    } else {
      qputenv(variable, QByteArray::fromStdString(token_));
    }
  }
  ~Reason() { completeLaunch(token_); }
  Reason(const Reason&) = delete;
  Reason& operator=(const Reason&) = delete;

 private:
  static constexpr const char* variable = "XDG_ACTIVATION_TOKEN";
  std::string token_;
};

std::unique_ptr<PopoverStage> makeStage(const Runtime& runtime, bool hasLayerShell) {
  auto stage = hasLayerShell ? layershell::makeStage(runtime) : nullptr;
  return stage ? std::move(stage) : std::make_unique<PlacedStage>();
}

class Windows final : public QObject {
 public:
  Windows(const Runtime& runtime, SendMessage send, const WindowsHost& host, bool hasLayerShell)
      : runtime_(runtime),
        send_(std::move(send)),
        state_(std::make_shared<RemoteState>(runtime.log, send_)),
        scenes_(runtime, state_, sceneHost(runtime, host, hasLayerShell), sceneIntents()) {
    connect(&scenes_, &ProgramScenes::shown, this,
            [this](const std::string& window) { send_({{"type", wire::windowShown}, {"window", window}}); });
    connect(&scenes_, &ProgramScenes::becameKey, this,
            [this](const std::string& window) { send_({{"type", wire::windowBecameKey}, {"window", window}}); });
    connect(&scenes_, &ProgramScenes::hidden, this, [this](const std::string& window, bool isClosing) {
      send_({{"type", wire::windowHidden}, {"window", window}, {"isClosing", isClosing}});
    });
    connect(&scenes_, &ProgramScenes::dropped, this, &Windows::offerToEnd);
  }

  void take(const json& message) {
    if (!isGreeted_) {
      greet(message);
      return;
    }
    if (state_->take(message) || (trayHost_ && trayHost_->take(message))) return;
    const auto number = message.find("number");
    // Words for an icon that is not there, for one, are none that anybody waits for.
    if (number == message.end() || !number->is_number_unsigned()) return;
    seen_ = number->get<std::uint64_t>();
    send_({{"type", wire::begun}, {"seen", seen_}});
    const auto type = messageType(message);
    try {
      perform(type, message);
    } catch (const std::exception& error) {
      Logger(runtime_.log, "Windows").error("ignored \"" + type + "\": " + error.what());
    }
    send_({{"type", wire::taken}, {"seen", seen_}});
    offerToEnd();
  }

 private:
  /// The first word is what the other half is; one that is not of this half's version is not understood.
  void greet(const json& message) {
    const auto version = messageType(message) == wire::hello ? message.value("version", std::string()) : std::string();
    isGreeted_ = version == seamVersion();
    send_({{"type", wire::hello}, {"version", seamVersion()}});
    if (isGreeted_) return;
    Logger(runtime_.log, "Windows")
        .error("these windows are of version " + seamVersion() + ", the program behind them of " + version);
    // The loop may not have begun, and it is the loop that this ends.
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(EXIT_FAILURE); });
  }

  void perform(const std::string& type, const json& message) {
    if (type == wire::openWindow) {
      const Reason reason(message);
      std::optional<std::string> section;
      if (const auto named = message.find("section"); named != message.end()) section = named->get<std::string>();
      scenes_.open(message.at("window").get<std::string>(), section);
    } else if (type == wire::closeWindow) {
      scenes_.close(message.at("window").get<std::string>());
    } else if (type == wire::orderFront) {
      scenes_.orderFront(message.at("window").get<std::string>());
    } else if (type == wire::activate) {
      scenes_.activate();
    } else if (type == wire::showAboutPanel) {
      const Reason reason(message);
      scenes_.showAboutPanel();
    } else if (type == wire::togglePopover) {
      const Reason reason(message);
      togglePopover(message);
    } else if (type == wire::keepOldTray) {
      keepOldTray(message.at("isWanted").get<bool>());
    }
  }

  void togglePopover(const json& message) {
    PopoverPlace place;
    if (message.contains("x")) place.click = QPoint(message.at("x").get<int>(), message.at("y").get<int>());
    if (tray_) place.icon = tray_->geometry();
    scenes_.togglePopover(place);
  }

  void keepOldTray(bool isWanted) {
    if (isWanted == (tray_ != nullptr)) return;
    if (!isWanted) {
      trayHost_.reset();
      tray_.reset();
      return;
    }
    // Where there can't be one, nobody need wait for it.
    if (!OldTrayWatch::isPossible()) return;
    tray_ = std::make_unique<OldTrayItem>();
    trayHost_.emplace(*tray_, runtime_.log, send_);
  }

  /// The process stays as long as it has something to draw.
  void offerToEnd() {
    if (scenes_.holdsAny() || tray_) return;
    send_({{"type", wire::idle}, {"seen", seen_}});
  }

  static SceneHost sceneHost(const Runtime& runtime, const WindowsHost& host, bool hasLayerShell) {
    SceneHost scenes;
    scenes.makeDesktop = [runtime, &host] {
      auto dialogue = std::make_unique<DialogApplicationChooser>(QStringLiteral("/usr/share/applications"));
      return host.makeDesktop(runtime, std::move(dialogue));
    };
    scenes.stage = makeStage(runtime, hasLayerShell);
    scenes.prepare = [] {
      chooseRenderer();
      useIconThemes(desktopPlaces());
    };
    scenes.fontFamily = [] { return desktopFontFamily(QGuiApplication::font().family(), desktopPlaces()); };
    scenes.sight = sightOf;
    // An X server's window manager would find a new window a place beside the popover.
    scenes.closesPopoverFirst = !hasWaylandCompositor();
    return scenes;
  }

  SceneIntents sceneIntents() {
    SceneIntents intents;
    intents.openMainWindow = [this](const ActivationRequest& request) {
      json message{{"type", wire::openMainWindow}};
      if (request.section) message["section"] = *request.section;
      send_(message);
    };
    intents.finishOnboarding = [this] { send_({{"type", wire::finishOnboarding}}); };
    intents.quit = [this] { send_({{"type", wire::quit}}); };
    return intents;
  }

  Runtime runtime_;
  SendMessage send_;
  std::shared_ptr<RemoteState> state_;
  ProgramScenes scenes_;
  std::unique_ptr<OldTrayItem> tray_;
  std::optional<StatusItemHost> trayHost_;
  std::uint64_t seen_ = 0;
  /// Whether the program behind the windows is the other half of this one.
  bool isGreeted_ = false;
};

/// The way out, for whoever still has something to say when it is closed.
class Line {
 public:
  void open(std::unique_ptr<Channel> channel) {
    const std::scoped_lock lock(mutex_);
    channel_ = std::move(channel);
  }
  void send(const json& message) {
    if (const auto channel = current()) channel->send(encodeMessage(message));
  }
  void close() {
    auto channel = current();
    {
      const std::scoped_lock lock(mutex_);
      channel_.reset();
    }
  }

 private:
  std::shared_ptr<Channel> current() {
    const std::scoped_lock lock(mutex_);
    return channel_;
  }

  std::mutex mutex_;
  std::shared_ptr<Channel> channel_;
};

}  // namespace

int runWindows(int argc, char** argv, const WindowsHost& host) {
  // The first text waits for the fonts' configuration, which can be read while the toolkit starts.
  const std::jthread fonts(FcInit);
  QCoreApplication::setApplicationName(QStringLiteral("quillmere"));
  const auto version = appVersion();
  QCoreApplication::setApplicationVersion(QString::fromUtf8(version.data(), static_cast<qsizetype>(version.size())));
  QGuiApplication::setDesktopFileName(QStringLiteral("app.quillmere.host"));
  QtMainExecutor main;
  // What is wanted has mostly been sent before this program began to run; it is read while the toolkit starts.
  std::optional<Windows> windows;
  ChannelEvents events;
  events.received = [&windows, &main](const std::string& bytes) {
    auto message = decodeMessage(bytes);
    if (!message) return;
    main.post([&windows, taken = std::move(*message)] { windows->take(taken); });
  };
  events.closed = [&main] {
    main.post([] { QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(EXIT_SUCCESS); }); });
  };
  auto channel = host.openChannel(std::move(events));
  if (!channel) {
    std::fputs("quillmere-windows draws the windows of quillmere, which starts it\n", stderr);
    return EXIT_FAILURE;
  }
  Line line;
  line.open(std::move(channel));

  const bool hasLayerShell = chooseDisplay();
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  installTranslation(host.languages());
  ignoreMnemonics();

  const auto log = host.makeLogSink();
  SystemClocks clocks;
  ThreadPoolExecutor background(1);
  const Runtime runtime{main, background, clocks, *log, makeThreadSerialQueue};
  windows.emplace(runtime, [&line](const json& message) { line.send(message); }, host, hasLayerShell);
  // The loop begins by asking for the accessibility bus; a first window is shown meanwhile.
  QCoreApplication::sendPostedEvents(&main);
  const int exitCode = QApplication::exec();
  line.close();
  main.shutDown();
  background.shutDown();
  windows.reset();
  return exitCode;
}

}  // namespace quillmere
