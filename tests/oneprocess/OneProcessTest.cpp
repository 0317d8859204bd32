// The whole program in one process, on the machine in memory: from its start to its end, as its user meets it.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QIcon>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <algorithm>
#include <cstdlib>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/oneprocess/LocalWindows.h"
#include "app/oneprocess/QtMainLoop.h"
#include "app/oneprocess/ToolkitWindowSystem.h"
#include "platform/Machine.h"
#include "platform/SessionWatch.h"
#include "platform/SingleInstance.h"
#include "platform/Updater.h"
#include "platform/memory/MemoryAudioHardware.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryMediaKeys.h"
#include "platform/memory/MemoryNowPlayingSource.h"
#include "platform/memory/MemoryReleaseFeed.h"
#include "platform/memory/MemorySoundPlayer.h"
#include "platform/memory/MemoryStatusItem.h"
#include "platform/memory/MemoryUserDefaults.h"
#include "platform/memory/MemoryWorkspace.h"
#include "platform/memory/RecordingLogSink.h"
#include "shell/Application.h"
#include "state/AppState.h"

namespace quillmere {
namespace {

constexpr const char* player = "org.example.player";
constexpr std::int32_t playerPID = 4711;
constexpr qint64 patienceMillis = 60'000;

class OnlyInstance final : public SingleInstance {
 public:
  explicit OnlyInstance(std::function<void(const ActivationRequest&)>& asked) : asked_(asked) {}
  void onActivationRequested(std::function<void(const ActivationRequest&)> callback) override {
    asked_ = std::move(callback);
  }
  bool acquire(const std::optional<ActivationRequest>& /*request*/) override { return true; }

 private:
  std::function<void(const ActivationRequest&)>& asked_;
};

class Stage final : public PopoverStage {
 public:
  void adopt(QWindow& window) override {
    window_ = &window;
    window.setFlags(Qt::FramelessWindowHint);
  }
  void show(const PopoverPlace& /*place*/) override {
    window_->show();
    window_->requestActivate();
  }
  void hide() override {
    if (window_ != nullptr) window_->hide();
  }
  [[nodiscard]] bool isShown() const override { return window_ != nullptr && window_->isVisible(); }
  void release() override { window_ = nullptr; }

 private:
  QWindow* window_ = nullptr;
};

class RecordingUpdater final : public Updater {
 public:
  explicit RecordingUpdater(int& checks) : checks_(checks) { latest_.set("99.0"); }
  void checkForUpdates() override { ++checks_; }
  [[nodiscard]] const Observable<std::optional<std::string>>& latestVersion() const override { return latest_; }

 private:
  int& checks_;
  Observable<std::optional<std::string>> latest_;
};

/// A program that is led through steps, each of which waits for what the one before it has brought.
class OneProcess : public ::testing::Test {
 protected:
  OneProcess() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
  }

  /// Once `isSo` holds, `perform` is done. The program that doesn't get there in time is ended, and the test fails.
  void when(std::string what, std::function<bool()> isSo, std::function<void()> perform = [] {}) {
    steps.push_back({std::move(what), std::move(isSo), std::move(perform)});
  }
  void quitWhen(std::string what, std::function<bool()> isSo) {
    when(std::move(what), std::move(isSo), [this] { EXPECT_TRUE(item->choose("Quit quillmere")); });
  }

  int run(std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), "quillmere");
    std::vector<char*> pointers;
    for (auto& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    int count = static_cast<int>(arguments.size());
    return runApplication(count, pointers.data(), host(count, pointers.data()));
  }

  Host host(int& count, char** arguments) {
    Host made;
    made.makeLogSink = [] { return std::make_unique<RecordingLogSink>(); };
    made.makeMainLoop = [this, &count, arguments] {
      auto loop = std::make_unique<QtMainLoop>(count, arguments);
      QObject::connect(&poll, &QTimer::timeout, [this] { go(); });
      poll.start(2);
      patience.start();
      return loop;
    };
    made.makeMachine = [this](const Runtime& runtime) { return machine(runtime); };
    made.makeSingleInstance = [this](const Runtime&) { return std::make_unique<OnlyInstance>(askAnew); };
    made.takeActivationToken = [] { return std::string(); };
    made.makeStatusItem = [this](const Runtime&) {
      auto icon = std::make_unique<MemoryStatusItem>();
      item = icon.get();
      return icon;
    };
    made.makeWindows = [this](const std::shared_ptr<AppState>& shared, const Runtime& runtime, WindowsIntents intents) {
      state = shared.get();
      SceneHost scenes;
      scenes.makeDesktop = [] { return std::move(MemoryDesktop().desktop); };
      scenes.stage = std::make_unique<Stage>();
      scenes.givesIcon = givesIcon;
      scenes.made = [this](QWindow& window, const std::string& identifier) {
        EXPECT_NE(window.handle(), nullptr);
        ++timesMade[identifier];
      };
      auto local =
          std::make_unique<LocalWindows>(runtime, shared, std::move(scenes), std::move(intents),
                                         [](ProgramScenes& drawn, const WindowsIntents& asked) {
                                           return std::make_unique<ToolkitWindowSystem>(drawn, asked.terminate);
                                         });
      windows = local.get();
      return local;
    };
    if (hasUpdater) {
      made.makeUpdater = [this](Machine&, Updater* announced) {
        isAnnounced = announced != nullptr;
        return std::make_unique<RecordingUpdater>(updateChecks);
      };
    }
    return made;
  }

  Machine machine(const Runtime& runtime) {
    Machine made;
    auto audio = std::make_unique<MemoryAudioHardware>(runtime.main, runtime.clocks);
    audio->addDevice({"speakers", "Speakers", 1, audio::transportBuiltIn, true, {{0, {0.6F}}}});
    audio->addProcess({player, playerPID, true, false});
    made.audio = std::move(audio);
    auto workspace = std::make_unique<MemoryWorkspace>();
    workspace->launch(player, "Example Player", playerPID);
    made.workspace = std::move(workspace);
    auto defaults = std::make_unique<MemoryUserDefaults>();
    if (isWelcomed) defaults->set("quillmere.onboardingCompleted", true);
    made.defaults = std::move(defaults);
    made.nowPlaying = std::make_unique<MemoryNowPlayingSource>(runtime.main);
    made.mediaKeys = std::make_unique<MemoryMediaKeys>();
    made.sounds = std::make_unique<MemorySoundPlayer>();
    if (hasFeed) made.releaseFeed = std::make_unique<MemoryReleaseFeed>();
    return made;
  }

  static bool isVisible(const ProgramWindows* program, const std::string& identifier) {
    const auto listed = program->windows();
    return std::ranges::find(listed, WindowInfo{identifier, true}) != listed.end();
  }
  [[nodiscard]] bool shows(const std::string& identifier) const { return windows && isVisible(windows, identifier); }
  [[nodiscard]] static QQuickWindow* windowTitled(const QString& title) {
    for (auto* window : QGuiApplication::allWindows()) {
      auto* quick = qobject_cast<QQuickWindow*>(window);
      if (quick != nullptr && quick->isVisible() && quick->title() == title) return quick;
    }
    return nullptr;
  }
  [[nodiscard]] static bool says(const QQuickItem& item, const QString& text) {
    if (item.isVisible() && item.property("text").toString() == text) return true;
    return std::ranges::any_of(item.childItems(), [&text](const auto* child) { return says(*child, text); });
  }
  [[nodiscard]] static bool mainWindowSays(const QString& text) {
    auto* window = windowTitled("quillmere");
    return window != nullptr && says(*window->contentItem(), text);
  }
  /// The windows of the program that show, whatever they are.
  [[nodiscard]] static int shownWindows() {
    const auto all = QGuiApplication::topLevelWindows();
    return static_cast<int>(std::ranges::count_if(all, [](const QWindow* window) { return window->isVisible(); }));
  }

  bool isWelcomed = true;
  bool givesIcon = true;
  bool hasUpdater = false;
  bool hasFeed = false;
  /// Whether the host's updater was handed what a feed tells.
  std::optional<bool> isAnnounced;
  int updateChecks = 0;
  /// Windows of the display's own that were told of, by their identifiers.
  std::map<std::string, int> timesMade;
  MemoryStatusItem* item = nullptr;
  AppState* state = nullptr;
  ProgramWindows* windows = nullptr;
  std::function<void(const ActivationRequest&)> askAnew;

 private:
  struct Step {
    std::string what;
    std::function<bool()> isSo;
    std::function<void()> perform;
  };

  void go() {
    if (windows == nullptr) return;
    if (steps.empty()) return;
    if (patience.elapsed() > patienceMillis) {
      ADD_FAILURE() << "it never came to this: " << steps.front().what;
      steps.clear();
      windows->terminate();
      return;
    }
    if (!steps.front().isSo()) return;
    const auto step = std::move(steps.front());
    steps.pop_front();
    step.perform();
  }

  std::deque<Step> steps;
  QTimer poll;
  QElapsedTimer patience;
};

TEST_F(OneProcess, StartsWithItsIconAndItsMainWindowAndEndsWithItsQuitEntry) {
  quitWhen("icon and main window are there", [this] { return item->isShown() && shows("main"); });
  EXPECT_EQ(run(), EXIT_SUCCESS);
}

TEST_F(OneProcess, StartsIntoTheBackgroundWithoutAWindow) {
  when(
      "the icon is there and the list stands", [this] { return item->isShown() && !state->apps()->empty(); },
      [this] {
        EXPECT_EQ(shownWindows(), 0);
        EXPECT_TRUE(item->choose("Quit quillmere"));
      });
  EXPECT_EQ(run({"--background"}), EXIT_SUCCESS);
}

TEST_F(OneProcess, ItsWindowsSeeTheStateItself) {
  when(
      "the window lists the player", [] { return mainWindowSays("Example Player"); },
      [this] { state->toggleWhisperMode(); });
  when(
      "the menu follows",
      [this] {
        item->openMenu();
        return item->find("Restore from Whisper Mode") != nullptr;
      },
      [this] { state->setGain(0.37F, player); });
  quitWhen("the window follows", [] { return mainWindowSays("37%"); });
  EXPECT_EQ(run(), EXIT_SUCCESS);
}

TEST_F(OneProcess, AClickOnTheIconOpensThePopoverAndAnotherClosesIt) {
  when("the icon is there", [this] { return item->isShown(); }, [this] { item->activate(); });
  when("one window shows", [] { return shownWindows() == 1; }, [this] { item->activate(); });
  quitWhen("none shows", [] { return shownWindows() == 0; });
  EXPECT_EQ(run({"--background"}), EXIT_SUCCESS);
}

TEST_F(OneProcess, IsARegularProgramForAsLongAsAWindowOfItsOwnShows) {
  when(
      "it is an accessory",
      [this] { return item->isShown() && windows->activationPolicy() == ActivationPolicy::accessory; },
      [this] { item->choose("Open quillmere Window"); });
  when(
      "it is regular with its window",
      [this] { return shows("main") && windows->activationPolicy() == ActivationPolicy::regular; },
      [this] { windows->close("main"); });
  quitWhen("it is an accessory again",
           [this] { return !shows("main") && windows->activationPolicy() == ActivationPolicy::accessory; });
  EXPECT_EQ(run({"--background"}), EXIT_SUCCESS);
}

TEST_F(OneProcess, AWindowThatIsOpenedAgainSoonAfterItsClosingIsANewOneToTheDisplayAndIsToldOfAgain) {
  const void* first = nullptr;
  when(
      "the window is there", [this] { return shows("main"); },
      [this, &first] {
        EXPECT_EQ(timesMade["main"], 1);
        first = windowTitled("quillmere");
        windows->close("main");
      });
  when("it has gone", [this] { return !shows("main"); }, [this] { windows->open("main"); });
  when(
      "it is there again", [this] { return shows("main"); },
      [this, &first] {
        EXPECT_EQ(windowTitled("quillmere"), first);
        EXPECT_EQ(timesMade["main"], 2);
        EXPECT_EQ(timesMade["onboarding"], 0);
        EXPECT_TRUE(item->choose("Quit quillmere"));
      });
  EXPECT_EQ(run(), EXIT_SUCCESS);
}

TEST_F(OneProcess, GivesTheDisplayItsPictureWithItsFirstWindow) {
  when(
      "the window is there", [this] { return shows("main"); },
      [this] {
        EXPECT_FALSE(QGuiApplication::windowIcon().isNull());
        EXPECT_TRUE(item->choose("Quit quillmere"));
      });
  EXPECT_EQ(run(), EXIT_SUCCESS);
}

TEST_F(OneProcess, LeavesADisplayThatHasABetterPictureWithThat) {
  givesIcon = false;
  when(
      "the window is there", [this] { return shows("main"); },
      [this] {
        EXPECT_TRUE(QGuiApplication::windowIcon().isNull());
        EXPECT_TRUE(item->choose("Quit quillmere"));
      });
  EXPECT_EQ(run(), EXIT_SUCCESS);
}

TEST_F(OneProcess, AFirstRunLeadsToTheOnboarding) {
  isWelcomed = false;
  quitWhen("the onboarding stands in the main window's place",
           [this] { return shows("onboarding") && !shows("main"); });
  EXPECT_EQ(run(), EXIT_SUCCESS);
}

TEST_F(OneProcess, ShowsTheSectionThatAnEntryNames) {
  when("the window is there", [this] { return shows("main"); }, [this] { item->choose("Settings…"); });
  quitWhen("the settings show", [] { return mainWindowSays("How quillmere behaves"); });
  EXPECT_EQ(run(), EXIT_SUCCESS);
}

TEST_F(OneProcess, ComesUpWhenItIsStartedOnceMore) {
  when("it runs in the background", [this] { return item->isShown(); }, [this] { askAnew({}); });
  quitWhen("its window is there", [this] { return shows("main"); });
  EXPECT_EQ(run({"--background"}), EXIT_SUCCESS);
}

TEST_F(OneProcess, LeadsToTheHostsOwnUpdater) {
  hasUpdater = true;
  when(
      "the icon tells of the newer version",
      [this] {
        item->openMenu();
        return item->find("Download update…") != nullptr;
      },
      [this] { item->choose("Download update…"); });
  quitWhen("it was asked", [this] { return updateChecks == 1; });
  EXPECT_EQ(run({"--background"}), EXIT_SUCCESS);
}

TEST_F(OneProcess, HandsTheHostsUpdaterWhatTheFeedTells) {
  hasUpdater = true;
  hasFeed = true;
  quitWhen("it is started", [this] { return item->isShown() && isAnnounced.has_value(); });
  EXPECT_EQ(run({"--background"}), EXIT_SUCCESS);
  EXPECT_EQ(isAnnounced, true);
}

TEST_F(OneProcess, HandsTheHostsUpdaterNothingWithoutAFeed) {
  hasUpdater = true;
  quitWhen("it is started", [this] { return item->isShown() && isAnnounced.has_value(); });
  EXPECT_EQ(run({"--background"}), EXIT_SUCCESS);
  EXPECT_EQ(isAnnounced, false);
}

}  // namespace
}  // namespace quillmere
