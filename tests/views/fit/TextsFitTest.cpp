// No text of a page is cut, and none lies upon another one: every scene of the preview, in each language, in windows as
// small as they go.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QThreadPool>
#include <memory>

#include "state/ViewSettings.h"
#include "views/AboutWindow.h"
#include "views/Translation.h"
#include "views/ViewFactory.h"
#include "views/preview/PreviewMachine.h"
#include "views/preview/PreviewScenes.h"

namespace quillmere {
namespace {

struct Case {
  const char* scene;
  const char* language;
};

void PrintTo(const Case& each, std::ostream* out) { *out << each.scene << ' ' << each.language; }

/// A text that is seen, and where, in the window.
struct Seen {
  QString text;
  QRectF at;
  const QQuickItem* item = nullptr;

  friend bool operator==(const Seen&, const Seen&) = default;
};

/// What others have named: cut with an ellipsis where it is too long, as it should be.
bool isName(const QString& text) {
  static const QStringList names{
      "Google Chrome",   "VLC media player",
      "White Noise",     "Built-in Audio Analog Stereo",
      "Rhythmbox",       "WH-1000XM4 Headphones",
      "LG HDMI Display", "A tab with a title that is far too long for the place that it has"};
  return names.contains(text);
}

/// A digit of a countdown stands in a cell as wide as the widest one.
bool isFigure(const QQuickItem& item) {
  const auto* figures = item.parentItem() != nullptr ? item.parentItem()->parentItem() : nullptr;
  return figures != nullptr && QByteArray(figures->metaObject()->className()).startsWith("Figures_");
}

bool isText(const QQuickItem& item) { return item.inherits("QQuickText"); }

QRectF inWindow(const QQuickItem& item, QRectF rect) { return item.mapRectToScene(rect); }

/// Where the letters are: within the item by its alignment.
QRectF lettersOf(const QQuickItem& item) {
  const double width = item.property("contentWidth").toDouble();
  const double height = item.property("contentHeight").toDouble();
  const auto across = item.property("horizontalAlignment").toInt();
  const auto down = item.property("verticalAlignment").toInt();
  QRectF letters(0, 0, width, height);
  if ((across & Qt::AlignRight) != 0) letters.moveRight(item.width());
  if ((across & Qt::AlignHCenter) != 0) letters.moveCenter({item.width() / 2, letters.center().y()});
  if ((down & Qt::AlignBottom) != 0) letters.moveBottom(item.height());
  if ((down & Qt::AlignVCenter) != 0) letters.moveCenter({letters.center().x(), item.height() / 2});
  return letters;
}

/// All texts below the item that are seen; `clip` is what of the window is not cut off.
void collect(const QQuickItem& item, QRectF clip, std::vector<Seen>& seen) {
  constexpr double invisible = 0.05;
  if (!item.isVisible() || item.opacity() < invisible) return;
  if (item.clip()) clip &= inWindow(item, {0, 0, item.width(), item.height()});
  if (isText(item) && !item.property("text").toString().isEmpty()) {
    const auto at = inWindow(item, lettersOf(item)) & clip;
    if (!at.isEmpty()) seen.push_back({item.property("text").toString(), at, &item});
  }
  for (const auto* child : item.childItems()) collect(*child, clip, seen);
}

std::vector<Seen> textsOf(const QQuickWindow& window) {
  std::vector<Seen> seen;
  collect(*window.contentItem(), {0, 0, double(window.width()), double(window.height())}, seen);
  return seen;
}

/// Whether the one covers the other on purpose: a menu, a sheet or a tool tip lies above the page.
bool areOnOneGround(const QQuickItem& one, const QQuickItem& other) {
  const auto ground = [](const QQuickItem& item) {
    const QQuickItem* above = &item;
    while (above->parentItem() != nullptr && above->parentItem()->parentItem() != nullptr &&
           !above->inherits("QQuickPopupItem") && above->objectName() != QLatin1StringView("sheet")) {
      above = above->parentItem();
    }
    return above;
  };
  return ground(one) == ground(other);
}

QStringList problemsOf(const QQuickWindow& window) {
  constexpr double tolerance = 1.0;
  QStringList problems;
  const auto texts = textsOf(window);
  for (const auto& [text, at, item] : texts) {
    if (isFigure(*item)) continue;
    if (item->property("truncated").toBool() && !isName(text)) problems << QStringLiteral("cut: \"%1\"").arg(text);
    // Without an ellipsis a line runs over its end.
    if (item->property("contentWidth").toDouble() > item->width() + tolerance) {
      problems << QStringLiteral("wider than its place: \"%1\"").arg(text);
    }
    if (item->property("contentHeight").toDouble() > item->height() + tolerance) {
      problems << QStringLiteral("taller than its place: \"%1\"").arg(text);
    }
    for (const auto* around = item->parentItem(); around != nullptr; around = around->parentItem()) {
      if (around->width() <= 0 || around->height() <= 0) continue;
      const auto place = inWindow(*around, {0, 0, around->width(), around->height()});
      if (at.left() < place.left() - tolerance || at.right() > place.right() + tolerance) {
        problems
            << QStringLiteral("beyond what it stands in (%1): \"%2\"").arg(around->metaObject()->className(), text);
        break;
      }
    }
    for (const auto& other : texts) {
      if (other.item >= item || isFigure(*other.item)) continue;
      const auto shared = at & other.at;
      if (shared.width() > tolerance && shared.height() > tolerance && areOnOneGround(*item, *other.item)) {
        problems << QStringLiteral("\"%1\" lies on \"%2\"").arg(text, other.text);
      }
    }
  }
  return problems;
}

class TextsFit : public testing::TestWithParam<Case> {
 protected:
  TextsFit() { installTranslation({GetParam().language}); }
  ~TextsFit() override {
    installTranslation({});
    // Factories wait for whoever still looks for an icon; here windows outlive them.
    window_.reset();
    QThreadPool::globalInstance()->waitForDone();
  }

  void open(const PreviewScene& scene) {
    scene.fill(box_);
    ViewFactory factory(
        {box_.state, box_.runtime, std::make_shared<ViewSettings>(*box_.state), box_.services, {}, "1.9.9"});
    switch (scene.window) {
      case PreviewScene::Window::popover:
        window_ = factory.makePopover();
        break;
      case PreviewScene::Window::main:
        window_ = factory.makeMainWindow();
        window_->resize(window_->minimumSize());
        break;
      case PreviewScene::Window::onboarding:
        window_ = factory.makeOnboarding();
        break;
      case PreviewScene::Window::about:
        window_ = makeAboutWindow(QStringLiteral("1.9.9"));
        break;
    }
    window_->show();
    standStill();
    if (scene.act) scene.act(*window_);
    standStill();
  }

  /// Until what is seen is the same for several pictures on end.
  void standStill() {
    constexpr int enough = 12;
    int same = 0;
    std::vector<Seen> before;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
          box_.time.runUntilIdle();
          window_->update();
          auto now = textsOf(*window_);
          same = !now.empty() && now == before ? same + 1 : 0;
          before = std::move(now);
          return same >= enough;
        },
        20'000));
  }

  PreviewMachine box_;
  std::unique_ptr<QQuickWindow> window_;
};

TEST_P(TextsFit, IntoTheirPlaces) {
  const auto& scenes = previewScenes();
  const auto scene = std::ranges::find(scenes, GetParam().scene, &PreviewScene::name);
  ASSERT_NE(scene, scenes.end());
  open(*scene);
  EXPECT_EQ(problemsOf(*window_).join('\n').toStdString(), "");
}

// Scenes whose names are longer than any place are not among them: those are cut with an ellipsis, as they should be.
constexpr std::array scenes{"about",
                            "popover-hover",
                            "main-hover",
                            "focus-hover",
                            "popover-several",
                            "popover-empty",
                            "popover-ducked",
                            "popover-whisper",
                            "popover-sleep-timer",
                            "popover-tabs",
                            "popover-routes",
                            "popover-devices",
                            "popover-profiles",
                            "popover-sleep-menu",
                            "main-several",
                            "main-empty",
                            "main-playing",
                            "main-update",
                            "main-call",
                            "main-cards",
                            "main-ducked",
                            "main-focus",
                            "main-tabs",
                            "activity",
                            "activity-empty",
                            "duck",
                            "duck-lists",
                            "duck-disabled",
                            "duck-empty",
                            "picker",
                            "picker-filtered",
                            "picker-no-match",
                            "focus-ready",
                            "focus-empty",
                            "focus-running",
                            "focus-break",
                            "profiles",
                            "profiles-selected",
                            "profiles-dirty",
                            "profiles-none",
                            "profiles-menu",
                            "settings",
                            "settings-granted",
                            "settings-denied",
                            "settings-nowhere",
                            "onboarding-nowhere",
                            "main-whisper",
                            "main-no-device",
                            "popover-no-device",
                            "profiles-routes",
                            "onboarding-welcome",
                            "onboarding-permissions",
                            "onboarding-granted",
                            "onboarding-denied"};

std::vector<Case> cases() {
  std::vector<Case> all;
  for (const auto* language : {"en", "de"}) {
    for (const auto* scene : scenes) all.push_back({scene, language});
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(Scenes, TextsFit, testing::ValuesIn(cases()), [](const testing::TestParamInfo<Case>& each) {
  auto name = std::string(each.param.language) + "_" + each.param.scene;
  std::ranges::replace(name, '-', '_');
  return name;
});

}  // namespace
}  // namespace quillmere
