// The states of the program that pictures are taken of.
#include "views/preview/PreviewScenes.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>

#include "views/mixer/AppRowModel.h"
#include "views/popover/MixerPanelPresenter.h"
#include "views/preview/PreviewMachine.h"

namespace quillmere {

namespace {

constexpr const char* spotify = "com.spotify.client";
constexpr const char* zoom = "us.zoom.xos";
constexpr const char* chrome = "com.google.Chrome";
constexpr const char* vlc = "org.videolan.vlc";
constexpr const char* game = "net.minetest.minetest";

/// An application icon of one colour and a letter, so that pictures don't depend on what is installed.
std::string icon(const QString& letter, const QColor& color) {
  static const QTemporaryDir folder;
  const auto path = folder.filePath(letter + color.name().mid(1) + QStringLiteral(".png"));
  constexpr int side = 128;
  constexpr int corner = 28;
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(image.rect(), corner, corner);
  QFont font;
  font.setPixelSize(side / 2);
  font.setWeight(QFont::DemiBold);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(image.rect(), Qt::AlignCenter, letter);
  painter.end();
  image.save(path);
  return path.toStdString();
}

void addDevices(PreviewMachine& box) {
  box.addDevice("speakers", "Built-in Audio Analog Stereo");
  box.addDevice("headset", "WH-1000XM4 Headphones");
  box.addDevice("hdmi", "LG HDMI Display");
}

void fillCommon(PreviewMachine& box) {
  addDevices(box);
  box.launch(spotify, "Spotify", true, icon("S", "#1db954"));
  box.launch(chrome, "Google Chrome", true, icon("C", "#ea4335"));
  box.launch(vlc, "VLC media player", true, icon("V", "#ff8800"));
  box.launch(game, "Minetest", true);
  box.launch(zoom, "Zoom", false, icon("Z", "#2d8cff"));
}

void fillSeveral(PreviewMachine& box) {
  fillCommon(box);
  box.start();
  box.state->setGain(0.42F, spotify);
  box.state->setGain(0.78F, chrome);
  box.state->setRouting("headset", vlc);
  box.state->setGain(0.65F, vlc);
  box.state->setGain(0.3F, game);
  box.state->toggleMute(game);
}

void fillEmpty(PreviewMachine& box) {
  addDevices(box);
  box.start();
}

void fillDucked(PreviewMachine& box) {
  fillCommon(box);
  box.start();
  box.state->setGain(0.9F, spotify);
  box.setListening(zoom, true);
  box.advance(0.4);
}

void fillNames(PreviewMachine& box) {
  box.addDevice("speakers", "Realtek ALC1220 Analog Output with a Very Long Name (Line Out, Rear Panel)");
  box.launch("org.example.long", "The Extraordinarily Long Application Name That Never Ends", true);
  box.launch("org.example.arabic", "مشغل الموسيقى العربية الطويل جدا", true);
  box.launch("org.example.hebrew", "נגן מוזיקה", true);
  box.launch("org.example.japanese", "音楽プレーヤー", true);
  box.launch("org.example.emoji", "🎧 Beats & <b>Bold</b>", true);
  box.launch("org.example.one", "i", true);
  box.start();
  box.state->setRouting("speakers", "org.example.long");
  box.state->setRouting("speakers", "org.example.arabic");
  box.state->addProfile("A profile whose name is much longer than its place in the footer");
  box.state->applyProfile(box.state->profiles()->back().id);
  box.state->startSleepTimer(90);
}

void fillForty(PreviewMachine& box) {
  addDevices(box);
  for (int number = 1; number <= 40; ++number) {
    const auto name = "Application " + std::to_string(number);
    box.launch("org.example.app" + std::to_string(number), name, true);
  }
  box.start();
}

void move(QQuickWindow& window, QPointF at) {
  QMouseEvent event(QEvent::MouseMove, at, at, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &event);
}

void click(QQuickWindow& window, QPointF at) {
  move(window, at);
  QMouseEvent press(QEvent::MouseButtonPress, at, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &press);
  QMouseEvent release(QEvent::MouseButtonRelease, at, at, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &release);
}

QPointF centreOf(QQuickItem& item) { return item.mapToScene({item.width() / 2, item.height() / 2}); }

QQuickItem* find(QQuickItem& root, const std::function<bool(QQuickItem&)>& wanted) {
  if (wanted(root)) return &root;
  for (auto* child : root.childItems()) {
    if (auto* found = find(*child, wanted)) return found;
  }
  return nullptr;
}

/// The first item with this text that takes clicks.
QQuickItem* button(QQuickWindow& window, const QString& text) {
  return find(*window.contentItem(), [&](QQuickItem& item) {
    return item.acceptedMouseButtons() != Qt::NoButton && item.property("text").toString().startsWith(text);
  });
}

void clickButton(QQuickWindow& window, const QString& text) {
  if (auto* item = button(window, text)) click(window, centreOf(*item));
}

AppRowModel* rowsOf(QQuickWindow& window) {
  auto* presenter = static_cast<QQuickView&>(window).rootObject()->property("presenter").value<QObject*>();
  // In the main window they are its page's.
  if (auto* page = presenter->property("canvas").value<QObject*>()) presenter = page;
  return presenter->property("rows").value<AppRowModel*>();
}

void openTabs(QQuickWindow& window, int count) {
  std::vector<BrowserTab> tabs;
  const char* titles[] = {"Lo-fi beats to relax to",
                          "Inbox (3)",
                          "Release notes",
                          "A tab with a title that is far too "
                          "long for the place that it has",
                          "Weather",
                          "Zebra facts",
                          "Q3 planning",
                          "Radio",
                          "Maps",
                          "Shopping list",
                          "News"};
  const char* urls[] = {"https://www.youtube.com/watch",
                        "https://mail.example.org",
                        "https://qt.io",
                        "https://long.org",
                        "https://www.weather.com",
                        "https://zebra.org",
                        "https://docs.example.org",
                        "https://radio.fm",
                        "about:blank",
                        "https://shop.example.org",
                        "https://news.example.org"};
  for (int i = 0; i < count; ++i) {
    BrowserTab tab;
    tab.id = "tab" + std::to_string(i);
    tab.browserBundleID = chrome;
    tab.title = titles[i % 11];
    tab.urlString = urls[i % 11];
    tab.isActive = i == 0;
    tabs.push_back(tab);
  }
  auto* rows = rowsOf(window);
  for (int row = 0; row < rows->count(); ++row) {
    if (rows->row(row)->bundleID() == QLatin1StringView(chrome)) rows->row(row)->tabs()->setTabs(tabs);
  }
}

void openElevenTabs(QQuickWindow& window) {
  openTabs(window, 11);
  QCoreApplication::processEvents();
  clickButton(window, "11 tabs");
}

void hoverRow(QQuickWindow& window) {
  if (auto* item = button(window, "Output for Spotify")) move(window, centreOf(*item) - QPointF(60, 0));
}

void fillFocus(PreviewMachine& box) {
  fillSeveral(box);
  box.state->addProfile("Evening");
  box.state->applyProfile(box.state->profiles()->back().id);
  box.state->startPomodoroFocus();
  box.advance(431);
}

using Window = PreviewScene::Window;

}  // namespace

const std::vector<PreviewScene>& previewScenes() {
  static const std::vector<PreviewScene> scenes{
      {"popover-several", Window::popover, fillSeveral, {}},
      {"popover-empty", Window::popover, fillEmpty, {}},
      {"popover-ducked", Window::popover, fillDucked, {}},
      {"popover-whisper",
       Window::popover,
       [](PreviewMachine& box) {
         fillSeveral(box);
         box.state->toggleWhisperMode();
         box.advance(0.1);
       },
       {}},
      {"popover-sleep-timer",
       Window::popover,
       [](PreviewMachine& box) {
         fillSeveral(box);
         box.state->startSleepTimer(30);
         box.advance(61);
       },
       {}},
      {"popover-names", Window::popover, fillNames, {}},
      {"popover-forty", Window::popover, fillForty, {}},
      {"popover-tabs", Window::popover, fillSeveral, openElevenTabs},
      {"popover-tabs-closed", Window::popover, fillSeveral, [](QQuickWindow& window) { openTabs(window, 11); }},
      {"popover-hover", Window::popover, fillSeveral, hoverRow},
      {"popover-routes", Window::popover, fillSeveral,
       [](QQuickWindow& window) { clickButton(window, "Output for Spotify"); }},
      {"popover-devices", Window::popover, fillSeveral,
       [](QQuickWindow& window) { clickButton(window, "Output device"); }},
      {"popover-profiles", Window::popover, fillSeveral,
       [](QQuickWindow& window) { clickButton(window, "Profile: "); }},
      {"popover-sleep-menu", Window::popover, fillSeveral,
       [](QQuickWindow& window) { clickButton(window, "Sleep timer"); }},
      {"popover-empty-profiles", Window::popover, fillEmpty,
       [](QQuickWindow& window) { clickButton(window, "Profile: "); }},
      {"main-several", Window::main, fillSeveral, {}},
      {"main-empty", Window::main, fillEmpty, {}},
      {"main-ducked", Window::main, fillDucked, {}},
      {"main-focus", Window::main, fillFocus, {}},
      {"main-names", Window::main, fillNames, {}},
      {"main-forty", Window::main, fillForty, {}},
      {"main-tabs", Window::main, fillSeveral, openElevenTabs},
      {"main-hover", Window::main, fillSeveral, hoverRow},
  };
  return scenes;
}

}  // namespace quillmere
