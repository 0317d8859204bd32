// The About panel as a window.
#include "views/AboutWindow.h"

#include <gtest/gtest.h>

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <memory>

namespace quillmere {
namespace {

/// An item of the scene whose text is this.
QQuickItem* itemSaying(QQuickItem& root, const QString& text) {
  if (root.property("text").toString() == text) return &root;
  for (auto* child : root.childItems()) {
    if (auto* found = itemSaying(*child, text)) return found;
  }
  return nullptr;
}

TEST(AboutWindow, SaysWhatTheProgramIsAndWhichOne) {
  const auto window = makeAboutWindow("1.2.3");
  EXPECT_EQ(window->title(), "About quillmere");
  EXPECT_NE(itemSaying(*window->contentItem(), "Version 1.2.3"), nullptr);
  EXPECT_NE(itemSaying(*window->contentItem(), "A volume, a mute and an output for every application."), nullptr);
}

TEST(AboutWindow, StandsInTheMiddleOfAWindowOfOneSize) {
  const auto window = makeAboutWindow("1.2.3");
  EXPECT_EQ(window->width(), 320);
  EXPECT_EQ(window->minimumSize(), window->size());
  EXPECT_EQ(window->maximumSize(), window->size());
  const auto* purpose = itemSaying(*window->contentItem(), "A volume, a mute and an output for every application.");
  ASSERT_NE(purpose, nullptr);
  EXPECT_EQ(purpose->mapToScene({purpose->width() / 2, 0}).x(), 160);
  EXPECT_EQ(purpose->property("leftPadding"), purpose->property("rightPadding"));
}

TEST(AboutWindow, EscapeAndReturnCloseIt) {
  for (const auto key : {Qt::Key_Escape, Qt::Key_Return}) {
    const auto window = makeAboutWindow("1.2.3");
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), key);
    EXPECT_FALSE(window->isVisible()) << key;
  }
}

}  // namespace
}  // namespace quillmere
