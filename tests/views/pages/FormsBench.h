// What the tests of the set-up pages and of the first run stand on: one page's presenter at a time, on a machine in
// memory.
#pragma once

#include <QObject>
#include <QStringList>
#include <QTest>
#include <QWindow>
#include <memory>

#include "RecordingDefaults.h"
#include "VirtualMachine.h"
#include "integrations/DesktopServices.h"
#include "platform/memory/MemoryDesktop.h"
#include "state/ViewSettings.h"
#include "views/autoduck/AutoDuckCanvasPresenter.h"
#include "views/focus/FocusCanvasPresenter.h"
#include "views/onboarding/OnboardingPresenter.h"
#include "views/preferences/PreferencesCanvasPresenter.h"
#include "views/profiles/ProfilesCanvasPresenter.h"
#include "views/shared/AppIconProvider.h"

namespace quillmere {

class FormsBench : public QObject {
  Q_OBJECT
  Q_PROPERTY(int onboardingsFinished MEMBER onboardingsFinished_ NOTIFY changed)
  Q_PROPERTY(bool onboardingCompleted READ isOnboardingCompleted NOTIFY changed)
  Q_PROPERTY(QStringList openedAnchors READ openedAnchors NOTIFY changed)
  Q_PROPERTY(QStringList openedURLs READ openedURLs NOTIFY changed)

 public:
  /// A fresh machine with `count` listed applications: "App 1" to "App N". None of the rule's defaults is installed.
  Q_INVOKABLE void start(int count) {
    page_.reset();
    settings_.reset();
    services_.reset();
    box_.reset();
    disk_ = std::make_unique<RecordingDefaults>();
    box_ = std::make_unique<VirtualMachine>(*disk_);
    box_->addSpeakers();
    box_->addHeadset();
    desktop_ = std::make_unique<MemoryDesktop>();
    for (int i = 1; i <= count; ++i) {
      box_->launch(idOf(i), nameOf(i));
      desktop_->workspace.launch(idOf(i), nameOf(i), i);
    }
    box_->start();
    services_ = std::make_unique<DesktopServices>(std::move(desktop_->desktop), box_->runtime);
    settings_ = std::make_shared<ViewSettings>(*box_->state);
    onboardingsFinished_ = 0;
    advance(0);
  }
  Q_INVOKABLE void stop() { start(0); }
  /// The presenter of a page that is shown anew: "AutoDuck", "Focus", "Profiles", "Preferences", "Onboarding".
  Q_INVOKABLE QObject* open(const QString& page) {
    page_.reset();
    ViewIntents intents;
    intents.onboardingFinished = [this] { ++onboardingsFinished_; };
    const ViewServices services{box_->state, box_->runtime, settings_, *services_, intents, "1.9.9"};
    if (page == QLatin1StringView("AutoDuck")) page_ = std::make_unique<AutoDuckCanvasPresenter>(services);
    if (page == QLatin1StringView("Focus")) page_ = std::make_unique<FocusCanvasPresenter>(services);
    if (page == QLatin1StringView("Profiles")) page_ = std::make_unique<ProfilesCanvasPresenter>(services);
    if (page == QLatin1StringView("Preferences")) page_ = std::make_unique<PreferencesCanvasPresenter>(services);
    if (page == QLatin1StringView("Onboarding")) {
      auto onboarding = std::make_unique<OnboardingPresenter>(services);
      onboarding->setVisible(true);
      page_ = std::move(onboarding);
    }
    // What has no parent, a script's engine would take for its own.
    if (page_) page_->setParent(this);
    advance(0);
    return page_.get();
  }
  Q_INVOKABLE void advance(double seconds) {
    box_->time.runUntilIdle();
    if (seconds > 0) box_->advanceSeconds(seconds);
    Q_EMIT changed();
  }
  Q_INVOKABLE void install(const QString& bundleID, const QString& name) const {
    desktop_->workspace.install(bundleID.toStdString(), name.toStdString(), "/apps/" + bundleID.toStdString());
  }

  /// Where an application's icon is asked for.
  Q_INVOKABLE static QUrl iconSource(const QString& bundleID) {
    return AppIconProvider::urlFor(bundleID.toStdString());
  }

  /// Presses a key in the window as one that is held does, again and again.
  Q_INVOKABLE static void repeatKey(QWindow* window, int key) {
    QTest::simulateEvent(window, true, static_cast<Qt::Key>(key), Qt::NoModifier, QString(), true);
  }

  // Browsers.
  Q_INVOKABLE void installChromium() const { desktop_->browserSetUp.setBrowsers({{"chromium", "Chromium", false}}); }
  /// With a package that has set it up.
  Q_INVOKABLE void installChromiumSetUp() const {
    desktop_->browserSetUp.setBrowsers({{"chromium", "Chromium", true, true}});
  }
  Q_INVOKABLE void connectChromium(const QString& version) const {
    box_->companions.set({{"chromium", version.toStdString(), version.toStdString()}});
  }

  // Auto-Duck.
  Q_INVOKABLE void setDuckLists(const QStringList& triggers, const QStringList& ducked) const {
    auto rule = *box_->state->duckRule();
    rule.triggerBundleIDs = setOf(triggers);
    rule.duckedBundleIDs = setOf(ducked);
    box_->state->setDuckRule(rule);
  }
  Q_INVOKABLE void setDelayMillis(int millis) const {
    auto rule = *box_->state->duckRule();
    rule.restoreDelayMillis = millis;
    box_->state->setDuckRule(rule);
  }
  Q_INVOKABLE QStringList triggers() const { return listOf(box_->state->duckRule()->triggerBundleIDs); }
  Q_INVOKABLE QStringList ducked() const { return listOf(box_->state->duckRule()->duckedBundleIDs); }
  Q_INVOKABLE double duckTarget() const { return static_cast<double>(box_->state->duckRule()->targetGain); }
  Q_INVOKABLE int fadeMillis() const { return static_cast<int>(box_->state->duckRule()->fadeMillis); }
  Q_INVOKABLE int delayMillis() const { return static_cast<int>(box_->state->duckRule()->restoreDelayMillis); }

  // Focus.
  Q_INVOKABLE QString focusApp() const {
    return QString::fromStdString(box_->state->pomodoroFocusBundleID()->value_or(""));
  }
  Q_INVOKABLE QStringList focusCandidates() const { return listOf(*box_->state->focusCandidateBundleIDs()); }
  Q_INVOKABLE void setFocusCandidates(const QStringList& bundleIDs) const {
    box_->state->setFocusCandidateBundleIDs(setOf(bundleIDs));
  }
  Q_INVOKABLE double gain(int app) const { return static_cast<double>(box_->gainOf(idOf(app))); }
  Q_INVOKABLE void setGain(int app, double gain) const { box_->state->setGain(static_cast<float>(gain), idOf(app)); }
  Q_INVOKABLE bool muted(int app) const { return box_->app(idOf(app))->muted; }

  // Profiles.
  Q_INVOKABLE void addProfile(const QString& name) const { box_->state->addProfile(name.toStdString()); }
  /// Replaces all profiles by one with so many entries.
  Q_INVOKABLE void makeHugeProfile(int entries) const {
    auto profile = box_->state->profiles()->front();
    profile.name = "Huge";
    profile.apps.clear();
    for (int i = 0; i < entries; ++i) profile.apps.push_back({idOf(i), nameOf(i), 0.5F, false, std::nullopt});
    box_->state->updateProfile(profile);
  }
  Q_INVOKABLE int profileCount() const { return static_cast<int>(box_->state->profiles()->size()); }
  Q_INVOKABLE QString profileName(int at) const { return QString::fromStdString(profile(at).name); }
  Q_INVOKABLE int entryCount(int at) const { return static_cast<int>(profile(at).apps.size()); }
  Q_INVOKABLE double entryGain(int at, int entry) const { return static_cast<double>(entryOf(at, entry).gain); }
  Q_INVOKABLE bool entryMuted(int at, int entry) const { return entryOf(at, entry).muted; }
  Q_INVOKABLE QString entryRoute(int at, int entry) const {
    return QString::fromStdString(entryOf(at, entry).routedDeviceUID.value_or(""));
  }
  /// -1 for none.
  Q_INVOKABLE int activeProfile() const {
    for (int at = 0; at < profileCount(); ++at) {
      if (*box_->state->activeProfileID() == profile(at).id) return at;
    }
    return -1;
  }

  // The desktop.
  Q_INVOKABLE void setTrusted(bool trusted) const { desktop_->permissions.setTrusted(trusted); }
  Q_INVOKABLE void setHasSettings(bool hasSettings) const { desktop_->permissions.setHasSettings(hasSettings); }
  Q_INVOKABLE void setFocusAuthorization(int number) const { desktop_->permissions.setFocusNumber(number); }
  Q_INVOKABLE void setLoginItem(bool enabled) const {
    desktop_->loginItem.setStatus(enabled ? LoginItemStatus::enabled : LoginItemStatus::notRegistered);
  }
  Q_INVOKABLE bool loginItem() const { return desktop_->loginItem.status() == LoginItemStatus::enabled; }
  Q_INVOKABLE void ignoreLoginChanges() const { desktop_->loginItem.ignoreChanges(); }
  Q_INVOKABLE bool isChoosing() const { return desktop_->chooser.isOpen(); }
  /// The user chooses the file, or cancels where it is empty.
  Q_INVOKABLE void choose(const QString& path) {
    desktop_->chooser.answer(path.isEmpty() ? std::nullopt : std::optional(path.toStdString()));
    advance(0);
  }
  Q_INVOKABLE bool bannerSetting() const { return *settings_->showDuckBanner(); }
  Q_INVOKABLE void setBannerSetting(bool shows) const { settings_->setShowDuckBanner(shows); }
  Q_INVOKABLE bool scrollSetting() const { return *settings_->scrollOverRowAdjustsVolume(); }
  Q_INVOKABLE bool pauseSetting() const { return *box_->state->pauseOnHeadphoneDisconnect(); }
  [[nodiscard]] bool isOnboardingCompleted() const { return *box_->state->hasCompletedOnboarding(); }
  [[nodiscard]] QStringList openedAnchors() const {
    QStringList anchors;
    for (const auto& anchor : desktop_->permissions.opened()) anchors.append(QString::fromStdString(anchor));
    return anchors;
  }
  [[nodiscard]] QStringList openedURLs() const {
    QStringList urls;
    for (const auto& url : desktop_->workspace.openedURLs()) urls.append(QString::fromStdString(url));
    return urls;
  }

 Q_SIGNALS:
  void changed();

 private:
  static std::string idOf(int app) { return "org.example.app" + std::to_string(app); }
  static std::string nameOf(int app) { return "App " + std::to_string(app); }
  static std::set<std::string> setOf(const QStringList& texts) {
    std::set<std::string> all;
    for (const auto& text : texts) all.insert(text.toStdString());
    return all;
  }
  static QStringList listOf(const std::set<std::string>& texts) {
    QStringList all;
    for (const auto& text : texts) all.append(QString::fromStdString(text));
    return all;
  }
  [[nodiscard]] const Profile& profile(int at) const {
    return box_->state->profiles()->at(static_cast<std::size_t>(at));
  }
  [[nodiscard]] const AudioApp& entryOf(int at, int entry) const {
    return profile(at).apps.at(static_cast<std::size_t>(entry));
  }

  std::unique_ptr<RecordingDefaults> disk_;
  std::unique_ptr<VirtualMachine> box_;
  std::unique_ptr<MemoryDesktop> desktop_;
  std::unique_ptr<DesktopServices> services_;
  std::shared_ptr<ViewSettings> settings_;
  std::unique_ptr<QObject> page_;
  int onboardingsFinished_ = 0;
};

}  // namespace quillmere
