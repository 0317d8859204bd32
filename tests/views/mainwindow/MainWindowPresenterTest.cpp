// The main window around its canvas, without a window.
#include "views/mainwindow/MainWindowPresenter.h"

#include <QPointer>
#include <QSignalSpy>

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class MainWindow : public ViewsFixture {
 protected:
  void make() { window = std::make_unique<MainWindowPresenter>(services()); }
  void TearDown() override { window.reset(); }

  std::unique_ptr<MainWindowPresenter> window;
};

TEST_F(MainWindow, StartsAtTheMixer) {
  startViews();
  make();
  EXPECT_EQ(window->section(), "Mixer");
  EXPECT_EQ(window->canvasSource().fileName(), "MixerCanvas.qml");
}

TEST_F(MainWindow, RequestNamesASectionByItsRawValue) {
  startViews();
  make();
  window->show("Settings");
  EXPECT_EQ(window->section(), "Settings");
  EXPECT_EQ(window->canvasSource().fileName(), "PreferencesCanvas.qml");
}

TEST_F(MainWindow, RequestThatNamesNoSectionChangesNothing) {
  startViews();
  make();
  window->show("Focus");
  window->show("settings");
  window->show("");
  EXPECT_EQ(window->section(), "Focus");
}

}  // namespace
}  // namespace quillmere
