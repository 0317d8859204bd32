// Pictures painted on the main thread: what a new one costs.
#include "views/design/ImageItem.h"

#include <gtest/gtest.h>

#include <QQuickWindow>
#include <QTest>

namespace quillmere {
namespace {

class Plain final : public ImageItem {
 public:
  using ImageItem::repaint;
  int painted = 0;

 protected:
  QImage paintPicture(QSize pixels, double /*scale*/) override {
    ++painted;
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(painted % 2 == 0 ? Qt::red : Qt::green);
    return image;
  }
};

TEST(ImageItem, ANewPictureIsOneFrame) {
  QQuickWindow window;
  window.resize(60, 40);
  Plain item;
  item.setSize({40, 20});
  item.setParentItem(window.contentItem());
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  int frames = 0;
  QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&frames] { ++frames; }, Qt::DirectConnection);
  // Whatever the window's appearance has asked for is over once nothing comes any more.
  for (int before = -1; before != frames;) {
    before = frames;
    QTest::qWait(100);
  }
  frames = 0;
  const int painted = item.painted;
  item.repaint();
  ASSERT_TRUE(QTest::qWaitFor([&frames] { return frames > 0; }));
  // Several frames long: that no other comes has no event.
  QTest::qWait(100);
  EXPECT_EQ(item.painted, painted + 1);
  EXPECT_EQ(frames, 1);
  EXPECT_EQ(window.grabWindow().pixelColor(20, 10), item.painted % 2 == 0 ? QColor(Qt::red) : QColor(Qt::green));
  item.setParentItem(nullptr);
}

}  // namespace
}  // namespace quillmere
