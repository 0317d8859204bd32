// What the pages' Qt Quick tests stand on: a machine in memory and the presenters over it, driven from QML.
#pragma once

#include <QObject>
#include <QStringList>
#include <memory>

#include "RecordingDefaults.h"
#include "VirtualMachine.h"
#include "integrations/DesktopServices.h"
#include "platform/Updater.h"
#include "platform/memory/MemoryDesktop.h"
#include "state/ViewSettings.h"
#include "views/activity/ActivityCanvasPresenter.h"
#include "views/mainwindow/MainWindowPresenter.h"
#include "views/mixercanvas/MixerCanvasPresenter.h"
#include "views/popover/MixerPanelPresenter.h"

namespace quillmere {

class BenchUpdater final : public Updater {
 public:
  void checkForUpdates() override { ++checks; }
  [[nodiscard]] const Observable<std::optional<std::string>>& latestVersion() const override { return latest; }

  Observable<std::optional<std::string>> latest;
  int checks = 0;
};

class Bench : public QObject {
  Q_OBJECT
  Q_PROPERTY(quillmere::MixerPanelPresenter* panel READ panel NOTIFY made)
  Q_PROPERTY(quillmere::MainWindowPresenter* window READ window NOTIFY made)
  Q_PROPERTY(quillmere::MixerCanvasPresenter* mixer READ mixer NOTIFY made)
  Q_PROPERTY(quillmere::ActivityCanvasPresenter* activity READ activity NOTIFY made)
  Q_PROPERTY(int windowsOpened MEMBER windowsOpened_ NOTIFY made)
  Q_PROPERTY(int quits MEMBER quits_ NOTIFY made)

 public:
  /// A fresh machine on which `sounding` of `count` applications sound: "App 1", "App 2" and so on.
  Q_INVOKABLE void start(int count, int sounding) {
    panel_.reset();
    window_.reset();
    mixer_.reset();
    activity_.reset();
    settings_.reset();
    desktop_.reset();
    box_.reset();
    updater_.reset();
    disk_ = std::make_unique<RecordingDefaults>();
    box_ = std::make_unique<VirtualMachine>(*disk_);
    box_->addSpeakers();
    box_->addHeadset();
    for (int i = 1; i <= count; ++i) {
      box_->launch(idOf(i), "App " + std::to_string(i));
      if (i <= sounding) box_->setSounding(idOf(i), true);
    }
    box_->launch("us.zoom.xos", "Zoom");
    box_->start();
    settings_ = std::make_shared<ViewSettings>(*box_->state);
    windowsOpened_ = 0;
    quits_ = 0;
    ViewIntents intents;
    intents.openMainWindow = [this] { ++windowsOpened_; };
    intents.quit = [this] { ++quits_; };
    desktop_ = std::make_unique<DesktopServices>(MemoryDesktop().desktop, box_->runtime, [state = box_->state] {
      std::vector<RunningApplication> running;
      for (const auto& app : *state->apps()) running.push_back({app.bundleID, app.name, 0});
      return running;
    });
    updater_ = std::make_unique<BenchUpdater>();
    box_->state->useUpdater(*updater_);
    const ViewServices services{box_->state, box_->runtime, settings_, *desktop_, intents, "1.9.9"};
    panel_ = std::make_unique<MixerPanelPresenter>(box_->state, box_->runtime, settings_, intents);
    window_ = std::make_unique<MainWindowPresenter>(services);
    mixer_ = std::make_unique<MixerCanvasPresenter>(services);
    activity_ = std::make_unique<ActivityCanvasPresenter>(services);
    panel_->setVisible(true);
    Q_EMIT made();
  }
  Q_INVOKABLE void stop() { start(0, 0); }
  Q_INVOKABLE void sound(int app, bool sounds) {
    box_->setSounding(idOf(app), sounds);
    advance(sounds ? 0.2 : 3);
  }
  Q_INVOKABLE void call(bool running) {
    box_->setListening("us.zoom.xos", running);
    advance(running ? 0.2 : 3);
  }
  Q_INVOKABLE void duckAlso(int app) {
    auto rule = *box_->state->duckRule();
    rule.duckedBundleIDs.insert(idOf(app));
    box_->state->setDuckRule(rule);
  }
  Q_INVOKABLE void advance(double seconds) { box_->advanceSeconds(seconds); }
  Q_INVOKABLE double gain(int app) const { return static_cast<double>(box_->gainOf(idOf(app))); }
  Q_INVOKABLE bool muted(int app) const { return box_->app(idOf(app))->muted; }
  Q_INVOKABLE QString route(int app) const {
    return QString::fromStdString(box_->app(idOf(app))->routedDeviceUID.value_or(""));
  }
  Q_INVOKABLE double master() const { return static_cast<double>(*box_->state->masterGain()); }
  Q_INVOKABLE bool whispers() const { return *box_->state->isWhisperMode(); }
  Q_INVOKABLE bool sleeps() const { return box_->state->sleepTimerEndsAt()->has_value(); }
  Q_INVOKABLE void setScrollAdjusts(bool adjusts) { settings_->setScrollOverRowAdjustsVolume(adjusts); }
  Q_INVOKABLE QObject* row(int at) const { return panel_->rows()->row(at); }
  /// Gives the row `count` tabs, of which the first is active: "Tab 1" and so on.
  Q_INVOKABLE void openTabs(QObject* row, int count) const { fill(*static_cast<AppRowPresenter*>(row)->tabs(), count); }
  /// Gives the list one tab, with this title.
  Q_INVOKABLE static void openTitledTab(QObject* tabs, const QString& title) {
    BrowserTab tab;
    tab.id = "browser:w1:t1";
    tab.browserBundleID = "browser";
    tab.title = title.toStdString();
    tab.urlString = "https://www.example.org";
    static_cast<TabListModel*>(tabs)->setTabs({tab});
  }
  /// The row of the main window's list, whose tabs have no limit.
  Q_INVOKABLE QObject* fullRow(int at) const { return mixer_->rows()->row(at); }

  [[nodiscard]] MixerPanelPresenter* panel() const { return panel_.get(); }
  [[nodiscard]] MainWindowPresenter* window() const { return window_.get(); }
  [[nodiscard]] MixerCanvasPresenter* mixer() const { return mixer_.get(); }
  [[nodiscard]] ActivityCanvasPresenter* activity() const { return activity_.get(); }
  Q_INVOKABLE void publish(const QString& version) const { updater_->latest.set(version.toStdString()); }
  Q_INVOKABLE int updatesAsked() const { return updater_->checks; }
  /// A player tells of a track: none where the title is empty.
  Q_INVOKABLE void play(const QString& title, const QString& artist, int app, bool playing) {
    NowPlayingInfo info{{nowplaying::title, title.toStdString()}, {nowplaying::playbackRate, playing ? 1.0 : 0.0}};
    if (!artist.isEmpty()) info[nowplaying::artist] = artist.toStdString();
    box_->player.setInfo(info);
    box_->player.setApplicationPID(app > 0 ? box_->pidOf(idOf(app)) : -1);
    advance(1.1);
  }
  /// The media keys that were pressed, by their numbers.
  Q_INVOKABLE QList<int> pressedKeys() const { return {box_->keys.pressed().begin(), box_->keys.pressed().end()}; }
  Q_INVOKABLE void addProfile(const QString& name, bool isActive) {
    box_->state->addProfile(name.toStdString());
    if (isActive) box_->state->applyProfile(box_->state->profiles()->back().id);
  }
  /// One more application, silent.
  Q_INVOKABLE void launch(int app, const QString& name) {
    box_->launch(idOf(app), name.toStdString());
    advance(3);
  }
  Q_INVOKABLE void quitApp(int app) {
    box_->quit(idOf(app));
    advance(3);
  }
  /// Nothing runs any more.
  Q_INVOKABLE void quitAll() {
    while (!box_->state->apps()->empty()) {
      box_->quit(box_->state->apps()->front().bundleID);
      advance(3);
    }
  }
  Q_INVOKABLE void setRoute(int app, const QString& device) {
    box_->state->setRouting(device.toStdString(), idOf(app));
  }
  Q_INVOKABLE void setGain(int app, double gain) { box_->state->setGain(static_cast<float>(gain), idOf(app)); }
  /// The numbers of the tabs that browsers were asked for.
  Q_INVOKABLE QList<int> activatedTabs() {
    advance(0);
    QList<int> numbers;
    for (const auto& script : box_->browsers.activations()) numbers.append(static_cast<int>(script.request.tab));
    return numbers;
  }

 Q_SIGNALS:
  void made();

 private:
  static std::string idOf(int app) { return "org.example.app" + std::to_string(app); }
  static void fill(TabListModel& model, int count) {
    std::vector<BrowserTab> tabs;
    for (int i = 1; i <= count; ++i) {
      BrowserTab tab;
      tab.id = "browser:w1:t" + std::to_string(i);
      tab.title = "Tab " + std::to_string(i);
      tab.urlString = "https://www.example.org";
      tab.isActive = i == 1;
      tabs.push_back(tab);
    }
    model.setTabs(std::move(tabs));
  }

  std::unique_ptr<RecordingDefaults> disk_;
  std::unique_ptr<VirtualMachine> box_;
  std::shared_ptr<ViewSettings> settings_;
  std::unique_ptr<MixerPanelPresenter> panel_;
  std::unique_ptr<MainWindowPresenter> window_;
  std::unique_ptr<MixerCanvasPresenter> mixer_;
  std::unique_ptr<ActivityCanvasPresenter> activity_;
  std::unique_ptr<DesktopServices> desktop_;
  std::unique_ptr<BenchUpdater> updater_;
  int windowsOpened_ = 0;
  int quits_ = 0;
};

}  // namespace quillmere
