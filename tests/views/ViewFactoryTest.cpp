// Windows are made and dropped as often as one likes, and leave nothing behind.
#include "views/ViewFactory.h"

#include <QPointer>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <QThreadPool>

#include "ViewsFixture.h"

namespace quillmere {
namespace {

class Windows : public ViewsFixture {
 protected:
  /// Factories wait for whoever still looks for an icon; here windows outlive them.
  ~Windows() override { QThreadPool::globalInstance()->waitForDone(); }
  [[nodiscard]] std::unique_ptr<ViewFactory> factory() { return std::make_unique<ViewFactory>(services()); }
};

QQuickItem* itemWith(QQuickItem& root, const char* property) {
  if (root.metaObject()->indexOfProperty(property) >= 0) return &root;
  for (auto* child : root.childItems()) {
    if (auto* found = itemWith(*child, property)) return found;
  }
  return nullptr;
}

TEST_F(Windows, PopoverIsThreeHundredAndFortyWide) {
  startWithSounding({spotify});
  const auto window = factory()->makePopover();
  EXPECT_EQ(window->width(), 340);
  EXPECT_GT(window->height(), 100);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(Windows, MainWindowHasItsTitleAndSizes) {
  startWithSounding({spotify});
  const auto window = factory()->makeMainWindow();
  EXPECT_EQ(window->title(), "quillmere");
  EXPECT_EQ(window->size(), QSize(1120, 720));
  EXPECT_EQ(window->minimumSize(), QSize(1040, 660));
}

TEST_F(Windows, DroppedWindowTakesItsPresenterAndItsHoldOnTheStateWithIt) {
  startWithSounding({spotify});
  const auto makers = factory();
  const auto users = box->state.use_count();
  for (int round = 0; round < 6; ++round) {
    auto window = round % 2 == 0 ? makers->makePopover() : makers->makeMainWindow();
    const QPointer<QObject> presenter =
        static_cast<QQuickView&>(*window).rootObject()->property("presenter").value<QObject*>();
    EXPECT_FALSE(presenter.isNull());
    EXPECT_GT(box->state.use_count(), users);
    window.reset();
    EXPECT_TRUE(presenter.isNull());
    EXPECT_EQ(box->state.use_count(), users);
  }
}

TEST_F(Windows, WindowOutlivesTheFactory) {
  startWithSounding({spotify});
  const auto window = factory()->makePopover();
  state().setGain(0.5F, spotify);
  state().setMasterGain(0.2F);
  sound(editor, true);
  EXPECT_GT(window->height(), 100);
}

TEST_F(Windows, PopoverGrowsWithItsRows) {
  startWithSounding({spotify, zoom});
  const auto window = factory()->makePopover();
  window->show();
  const int before = window->height();
  sound(editor, true);
  EXPECT_TRUE(QTest::qWaitFor([&] { return window->height() == before + 37; }));
}

TEST_F(Windows, RowOfAHiddenPopoverKeepsItsPresenterUntilItIsGone) {
  startWithSounding({spotify, editor});
  const auto window = factory()->makePopover();
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  QPointer<QQuickItem> row;
  ASSERT_TRUE(QTest::qWaitFor([&] { return (row = itemWith(*window->contentItem(), "showsControls")) != nullptr; }));
  const QPointer<QObject> presenter = row->property("row").value<QObject*>();
  window->hide();
  for (const auto& each : {spotify, editor}) sound(each, false);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  ASSERT_FALSE(row.isNull()) << "a hidden window draws no picture, and its list changes with its pictures";
  EXPECT_FALSE(presenter.isNull());
  window->show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return row.isNull(); }));
  EXPECT_TRUE(QTest::qWaitFor([&] { return presenter.isNull(); }));
}

TEST_F(Windows, RowIsNoLongerHoveredWhenThePointerLeavesTheWindow) {
  startWithSounding({spotify});
  const auto window = factory()->makePopover();
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  QQuickItem* row = nullptr;
  ASSERT_TRUE(QTest::qWaitFor([&] { return (row = itemWith(*window->contentItem(), "showsControls")) != nullptr; }));
  QTest::mouseMove(window.get(), row->mapToScene({40, 18}).toPoint());
  EXPECT_TRUE(QTest::qWaitFor([&] { return row->property("hovering").toBool(); }));
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(window.get(), &leave);
  EXPECT_FALSE(row->property("hovering").toBool());
  // A window that is hidden and shown anew, somewhere else perhaps, starts without it too.
  QTest::mouseMove(window.get(), row->mapToScene({60, 20}).toPoint());
  EXPECT_TRUE(QTest::qWaitFor([&] { return row->property("hovering").toBool(); }));
  window->hide();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !row->property("hovering").toBool(); }));
}

}  // namespace
}  // namespace quillmere
