// The keys that the menu names, in a window.
#include "windows/WindowKeys.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QTest>
#include <QWindow>
#include <string>
#include <vector>

namespace quillmere {
namespace {

/// Wants Ctrl+W for itself.
class Editor : public QWindow {
 public:
  int taken = 0;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool wants = event->key() == Qt::Key_W;
    taken += wants ? 1 : 0;
    event->setAccepted(wants);
  }
};

class Keys : public ::testing::Test {
 protected:
  Keys() {
    keys.serve(window);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
  }

  std::vector<std::string> done;
  WindowKeys keys{{[this] { done.emplace_back("window"); }, [this] { done.emplace_back("settings"); },
                   [this] { done.emplace_back("quit"); }}};
  QWindow window;
};

TEST_F(Keys, OpenTheWindowTheSettingsAndEndTheProgram) {
  QTest::keyClick(&window, Qt::Key_0, Qt::ControlModifier);
  QTest::keyClick(&window, Qt::Key_Comma, Qt::ControlModifier);
  QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(done, (std::vector<std::string>{"window", "settings", "quit"}));
  EXPECT_TRUE(window.isVisible());
}

TEST_F(Keys, ControlWClosesTheWindow) {
  QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(window.isVisible());
  EXPECT_TRUE(done.empty());
}

TEST_F(Keys, TheKeypadsNoughtIsANoughtToo) {
  QTest::keyClick(&window, Qt::Key_0, Qt::ControlModifier | Qt::KeypadModifier);
  EXPECT_EQ(done, (std::vector<std::string>{"window"}));
}

TEST_F(Keys, WithoutControlOrWithMoreTheyMeanNothing) {
  QTest::keyClick(&window, Qt::Key_Q);
  QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier);
  QTest::keyClick(&window, Qt::Key_W, Qt::AltModifier);
  EXPECT_TRUE(done.empty());
  EXPECT_TRUE(window.isVisible());
}

TEST_F(Keys, WhatAControlWantsForItselfItGets) {
  Editor editor;
  keys.serve(editor);
  editor.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&editor));
  QTest::keyClick(&editor, Qt::Key_W, Qt::ControlModifier);
  EXPECT_EQ(editor.taken, 1);
  EXPECT_TRUE(editor.isVisible());
  QTest::keyClick(&editor, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(done, (std::vector<std::string>{"quit"}));
}

}  // namespace
}  // namespace quillmere
