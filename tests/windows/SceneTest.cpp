// A window that is asked for while it shows: left in its place, or fetched from where nobody sees it.
#include "windows/Scene.h"

#include <gtest/gtest.h>

#include <QTest>
#include <chrono>

#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;

constexpr const char* tokenVariable = "XDG_ACTIVATION_TOKEN";

class SceneOfAWindow : public ::testing::Test {
 protected:
  SceneOfAWindow() {
    qunsetenv(tokenVariable);
    QObject::connect(&scene, &Scene::shown, [this] { ++shown; });
    QObject::connect(&scene, &Scene::hidden, [this] { ++hidden; });
  }
  ~SceneOfAWindow() override { qunsetenv(tokenVariable); }

  /// Shows it for the first time, until it is seen.
  void open() {
    scene.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(scene.window()));
    watch();
  }
  void watch() {
    scene.window()->installEventFilter(&watcher);
    QObject::connect(scene.window(), &QWindow::visibleChanged, [this] { ++told; });
  }

  /// Sees what is done to the window itself.
  class Watcher final : public QObject {
   public:
    std::vector<bool> done;
    /// How often the pointer has left it.
    int left = 0;

   protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
      if (event->type() == QEvent::Hide || event->type() == QEvent::Show) done.push_back(event->type() == QEvent::Show);
      if (event->type() == QEvent::Leave) ++left;
      return false;
    }
  };

  VirtualTime time;
  RecordingLogSink log;
  Sight sight = Sight::seen;
  int looks = 0;
  int shown = 0;
  int hidden = 0;
  /// How often anybody who listens to the window was told that it was shown or hidden.
  int told = 0;
  Watcher watcher;
  Scene scene{time.runtime(log),
              [] {
                auto window = std::make_unique<QWindow>();
                window->resize(200, 100);
                return window;
              },
              20s,
              [this](QWindow&) {
                ++looks;
                return sight;
              }};
};

TEST_F(SceneOfAWindow, OneThatIsElsewhereIsFetchedOnceTheDesktopHasHadItsTime) {
  open();
  sight = Sight::unseen;
  scene.show();
  time.advance(Scene::patience - 1ms);
  EXPECT_TRUE(watcher.done.empty());
  time.advance(1ms);
  EXPECT_EQ(watcher.done, (std::vector{false, true}));
  EXPECT_TRUE(scene.isVisible());
}

TEST_F(SceneOfAWindow, ADoubtfulOneIsFetchedOnlyIfItStaysSo) {
  open();
  sight = Sight::doubtful;
  scene.show();
  time.advance(Scene::patience);
  sight = Sight::seen;
  time.advance(1min);
  EXPECT_TRUE(watcher.done.empty());
  sight = Sight::doubtful;
  scene.show();
  time.advance(2 * Scene::patience);
  EXPECT_EQ(watcher.done, (std::vector{false, true}));
}

TEST_F(SceneOfAWindow, NobodyIsToldOfAFetchAndItIsDoneOnce) {
  open();
  sight = Sight::unseen;
  scene.show();
  time.advance(1min);
  EXPECT_EQ(watcher.done, (std::vector{false, true}));
  EXPECT_EQ(told, 0) << "the page that shows would begin anew";
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(hidden, 0);
  EXPECT_NE(scene.window(), nullptr) << "it has not been hidden for good";
}

TEST_F(SceneOfAWindow, OneThatIsSeenIsLeftAsItIs) {
  open();
  scene.show();
  time.advance(1min);
  EXPECT_EQ(looks, 1);
  EXPECT_TRUE(watcher.done.empty());
}

TEST_F(SceneOfAWindow, ADesktopThatWasGivenAReasonDecidesByIt) {
  open();
  sight = Sight::unseen;
  qputenv(tokenVariable, "a reason");
  scene.show();
  time.advance(1min);
  EXPECT_TRUE(watcher.done.empty());
}

TEST_F(SceneOfAWindow, ANewWindowIsWhereThePersonIs) {
  sight = Sight::unseen;
  open();
  time.advance(1min);
  EXPECT_TRUE(watcher.done.empty());
}

TEST_F(SceneOfAWindow, OneThatHasNotBeenSeenYetIsStillOnItsWay) {
  sight = Sight::unseen;
  scene.show();
  // The mixer orders it to the front the moment it hears of it.
  scene.show();
  time.advance(1min);
  EXPECT_TRUE(watcher.done.empty());
}

TEST_F(SceneOfAWindow, OneThatIsMaximisedStaysSoHoweverItIsAskedFor) {
  open();
  scene.window()->showMaximized();
  scene.show();
  EXPECT_EQ(scene.window()->windowState(), Qt::WindowMaximized) << "asked for while it shows";
  sight = Sight::unseen;
  scene.show();
  time.advance(Scene::patience);
  EXPECT_EQ(scene.window()->windowState(), Qt::WindowMaximized) << "fetched";
  scene.hide();
  scene.show();
  EXPECT_EQ(scene.window()->windowState(), Qt::WindowMaximized) << "closed and opened again";
}

TEST_F(SceneOfAWindow, OneThatIsMinimisedComesBackAsItWas) {
  open();
  scene.window()->setWindowStates(Qt::WindowMaximized | Qt::WindowMinimized);
  scene.show();
  EXPECT_EQ(scene.window()->windowStates(), Qt::WindowStates(Qt::WindowMaximized));
}

TEST_F(SceneOfAWindow, ThePointerLeavesOneThatIsHiddenUnderIt) {
  open();
  EXPECT_EQ(watcher.left, 0);
  scene.hide();
  EXPECT_EQ(watcher.left, 1);
}

TEST_F(SceneOfAWindow, OneThatWasClosedMeanwhileStaysClosed) {
  open();
  sight = Sight::unseen;
  scene.show();
  scene.hide();
  time.advance(Scene::patience);
  EXPECT_FALSE(scene.isVisible());
  EXPECT_EQ(hidden, 1);
}

}  // namespace
}  // namespace quillmere
