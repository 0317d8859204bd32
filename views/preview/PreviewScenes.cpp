// The states of the program that pictures are taken of.
#include "views/preview/PreviewScenes.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>
#include <algorithm>
#include <iterator>

#include "views/ViewFactory.h"
#include "views/design/Appearance.h"
#include "views/mixer/AppRowModel.h"
#include "views/popover/MixerPanelPresenter.h"
#include "views/preview/FormScenes.h"
#include "views/preview/KeyScenes.h"
#include "views/preview/PreviewGestures.h"
#include "views/preview/PreviewMachine.h"

namespace quillmere {

namespace {

constexpr const char* spotify = "com.spotify.client";
constexpr const char* zoom = "us.zoom.xos";
constexpr const char* chrome = "com.google.Chrome";
constexpr const char* vlc = "org.videolan.vlc";
constexpr const char* game = "net.minetest.minetest";

void addDevices(PreviewMachine& box) {
  box.addDevice("speakers", "Built-in Audio Analog Stereo");
  box.addDevice("headset", "WH-1000XM4 Headphones");
  box.addDevice("hdmi", "LG HDMI Display");
}

void fillCommon(PreviewMachine& box) {
  addDevices(box);
  box.launch(spotify, "Spotify", true, previewIcon("S", "#1db954"));
  box.launch(chrome, "Google Chrome", true, previewIcon("C", "#ea4335"));
  box.launch(vlc, "VLC media player", true, previewIcon("V", "#ff8800"));
  box.launch(game, "Minetest", true);
  box.launch(zoom, "Zoom", false, previewIcon("Z", "#2d8cff"));
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

void fillWhispering(PreviewMachine& box) {
  fillSeveral(box);
  box.state->toggleWhisperMode();
  box.advance(0.1);
}

/// A device and a profile of one's choice.
void fillChosen(PreviewMachine& box) {
  fillSeveral(box);
  box.state->setOutputDeviceUID("headset");
  box.state->addProfile("Evening");
  box.state->addProfile("Deep work");
  box.state->applyProfile(box.state->profiles()->at(1).id);
  box.advance(1.5);
}

void fillWithoutDevices(PreviewMachine& box) {
  box.launch(spotify, "Spotify", true, previewIcon("S", "#1db954"));
  box.launch(zoom, "Zoom", false, previewIcon("Z", "#2d8cff"));
  box.start();
}

void fillContrast(PreviewMachine& box) {
  Appearance::shared().setWantsContrast(true);
  fillSeveral(box);
  box.play("Weird Fishes / Arpeggi", "Radiohead", spotify, true);
  box.advance(1.1);
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

void fillPlaying(PreviewMachine& box) {
  fillSeveral(box);
  box.play("Weird Fishes / Arpeggi", "Radiohead", spotify, true);
  box.advance(1.1);
}

void fillUpdate(PreviewMachine& box) {
  fillPlaying(box);
  box.updater.latest.set("2.0");
}

void fillCall(PreviewMachine& box) {
  fillDucked(box);
  box.play("Weird Fishes / Arpeggi", "", "", false);
  box.advance(1.1);
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
  if (auto* rows = find(*window.contentItem(), [](QQuickItem& item) { return item.objectName() == "rows"; })) {
    QMetaObject::invokeMethod(rows, "positionViewAtIndex", Q_ARG(int, 0), Q_ARG(int, 0));
    QCoreApplication::processEvents();
  }
  clickButton(window, QCoreApplication::translate("quillmere::TabListModel", "%n tabs", nullptr, 11));
}

void hoverRow(QQuickWindow& window) {
  if (auto* item = button(window, shownText("RouteButton", "Output for %1").arg("Spotify")))
    move(window, centreOf(*item) - QPointF(60, 0));
}

void showActivity(QQuickWindow& window) { ViewFactory::showSection(window, "Activity"); }

void hoverCard(QQuickWindow& window) {
  if (auto* item = button(window, shownText("RouteButton", "Output for %1").arg("Spotify")))
    move(window, centreOf(*item) - QPointF(200, 0));
}

/// The main window as far down as it goes.
void smallest(QQuickWindow& window) { window.resize(1040, 660); }

void tile(QQuickWindow& window) {
  window.setMinimumSize({});
  window.resize(620, 560);
}

void scrollToEnd(QQuickWindow& window) {
  auto* rows = find(*window.contentItem(), [](QQuickItem& item) { return item.objectName() == "rows"; });
  if (rows) QMetaObject::invokeMethod(rows, "positionViewAtEnd");
}

void fillFocus(PreviewMachine& box) {
  fillSeveral(box);
  box.state->addProfile("Evening");
  box.state->applyProfile(box.state->profiles()->back().id);
  box.state->startPomodoroFocus();
  box.advance(431);
}

using Window = PreviewScene::Window;

std::vector<PreviewScene> mixerScenes() {
  return {
      {"popover-several", Window::popover, fillSeveral, {}},
      {"popover-empty", Window::popover, fillEmpty, {}},
      {"popover-ducked", Window::popover, fillDucked, {}},
      {"popover-whisper", Window::popover, fillWhispering, {}},
      {"popover-no-device", Window::popover, fillWithoutDevices, {}},
      {"popover-contrast", Window::popover, fillContrast, {}},
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
       [](QQuickWindow& window) { clickButton(window, shownText("RouteButton", "Output for %1").arg("Spotify")); }},
      {"popover-devices", Window::popover, fillChosen,
       [](QQuickWindow& window) { clickButton(window, shownText("OutputRow", "Output device: %1").arg("")); }},
      {"popover-profiles", Window::popover, fillChosen,
       [](QQuickWindow& window) { clickButton(window, shownText("MixerPanel", "Profile: %1").arg("")); }},
      {"popover-sleep-menu", Window::popover, fillSeveral,
       [](QQuickWindow& window) { clickButton(window, shownText("SleepTimerControl", "Sleep timer")); }},
      {"popover-empty-profiles", Window::popover, fillEmpty,
       [](QQuickWindow& window) { clickButton(window, shownText("MixerPanel", "Profile: %1").arg("")); }},
      {"about", Window::about, fillEmpty, {}},
      {"main-several", Window::main, fillSeveral, {}},
      {"main-empty", Window::main, fillEmpty, {}},
      {"main-playing", Window::main, fillPlaying, {}},
      {"main-update", Window::main, fillUpdate, smallest},
      {"main-call", Window::main, fillCall, {}},
      {"main-tile", Window::main, fillPlaying, tile},
      {"main-cards", Window::main, fillSeveral, scrollToEnd},
      {"main-names-cards", Window::main, fillNames, scrollToEnd},
      {"main-forty-end", Window::main, fillForty, scrollToEnd},
      {"activity", Window::main, fillSeveral, showActivity},
      {"activity-empty", Window::main, fillEmpty, showActivity},
      {"activity-forty", Window::main, fillForty, showActivity},
      {"activity-names", Window::main, fillNames, showActivity},
      {"main-ducked", Window::main, fillDucked, {}},
      {"main-contrast", Window::main, fillContrast, {}},
      {"main-contrast-cards", Window::main, fillContrast, scrollToEnd},
      {"main-whisper", Window::main, fillWhispering, {}},
      {"main-no-device", Window::main, fillWithoutDevices, {}},
      {"main-focus", Window::main, fillFocus, {}},
      {"main-names", Window::main, fillNames, {}},
      {"main-forty", Window::main, fillForty, {}},
      {"main-tabs", Window::main, fillSeveral, openElevenTabs},
      {"main-hover", Window::main, fillSeveral,
       [](QQuickWindow& window) {
         scrollToEnd(window);
         QCoreApplication::processEvents();
         hoverCard(window);
       }},
  };
}

}  // namespace

const std::vector<PreviewScene>& previewScenes() {
  static const std::vector<PreviewScene> scenes = [] {
    auto all = mixerScenes();
    std::ranges::move(formScenes(), std::back_inserter(all));
    std::ranges::move(keyScenes(), std::back_inserter(all));
    return all;
  }();
  return scenes;
}

}  // namespace quillmere
