// What is told of the display's windows behind one of the toolkit's.
#include "windows/NativeWindow.h"

#include <gtest/gtest.h>

#include <QWindow>

namespace quillmere {
namespace {

class NativeWindowOfAWindow : public ::testing::Test {
 protected:
  NativeWindowOfAWindow() { window.resize(200, 100); }

  void watch() {
    onNativeWindow(window, [this](QWindow& told) {
      EXPECT_EQ(&told, &window);
      ++made;
      hadHandle = told.handle() != nullptr;
      wasExposed = told.isExposed();
    });
  }

  int made = 0;
  bool hadHandle = false;
  bool wasExposed = true;
  QWindow window;
};

TEST_F(NativeWindowOfAWindow, IsToldOfWhenItIsMadeAndBeforeItShows) {
  watch();
  EXPECT_EQ(made, 0);
  window.show();
  EXPECT_EQ(made, 1);
  EXPECT_TRUE(hadHandle);
  EXPECT_FALSE(wasExposed);
}

TEST_F(NativeWindowOfAWindow, IsToldOfAtOnceWhereThereIsOneAlready) {
  window.create();
  watch();
  EXPECT_EQ(made, 1);
  window.show();
  EXPECT_EQ(made, 1);
}

TEST_F(NativeWindowOfAWindow, IsAnotherOneOnceTheWindowWasClosed) {
  watch();
  window.show();
  window.close();
  EXPECT_EQ(window.handle(), nullptr);
  window.show();
  EXPECT_EQ(made, 2);
}

TEST_F(NativeWindowOfAWindow, StaysTheSameWhileTheWindowIsHidden) {
  watch();
  window.show();
  window.hide();
  window.show();
  EXPECT_EQ(made, 1);
}

}  // namespace
}  // namespace quillmere
