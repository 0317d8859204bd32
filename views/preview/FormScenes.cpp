// The set-up pages and the first run.
#include "views/preview/FormScenes.h"

#include <QCoreApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "platform/memory/MemoryBrowserCompanions.h"
#include "views/ViewFactory.h"
#include "views/preview/PreviewGestures.h"
#include "views/preview/PreviewMachine.h"

namespace quillmere {

namespace {

using Window = PreviewScene::Window;
using Act = std::function<void(QQuickWindow&)>;

struct Sample {
  const char* bundleID;
  const char* name;
  const char* letter;
  const char* color;
};

constexpr Sample running[] = {
    {"com.spotify.client", "Spotify", "S", "#1db954"},
    {"com.google.Chrome", "Google Chrome", "C", "#ea4335"},
    {"us.zoom.xos", "Zoom", "Z", "#2d8cff"},
    {"org.videolan.vlc", "VLC media player", "V", "#ff8800"},
};
constexpr Sample installed[] = {
    {"com.tinyspeck.slackmacgap", "Slack", "S", "#611f69"},
    {"com.microsoft.teams2", "Microsoft Teams", "T", "#5558af"},
    {"com.hnc.Discord", "Discord", "D", "#5865f2"},
    {"org.mozilla.firefox", "Firefox", "F", "#ff7139"},
    {"org.gnome.Rhythmbox3", "Rhythmbox", "R", "#f5c211"},
    {"org.example.noise", "White Noise", "W", "#8b8fa3"},
    {"org.example.arabic", "مشغل الموسيقى العربية", "م", "#2a9d8f"},
    {"org.audacityteam.Audacity", "Audacity", "A", "#2a4ae8"},
    {"org.blender.Blender", "Blender", "B", "#ea7600"},
    {"org.gimp.GIMP", "GNU Image Manipulation Program", "G", "#7a6a53"},
};

std::string iconOf(const Sample& sample) { return previewIcon(QString::fromUtf8(sample.letter), QColor(sample.color)); }

}  // namespace

void fillForms(PreviewMachine& box) {
  box.addDevice("speakers", "Built-in Audio Analog Stereo");
  box.addDevice("headset", "WH-1000XM4 Headphones");
  for (const auto& sample : running) box.launch(sample.bundleID, sample.name, true, iconOf(sample));
  box.launch("net.minetest.minetest", "Minetest", true);
  for (const auto& sample : installed) box.install(sample.bundleID, sample.name, iconOf(sample));
  box.start();
  box.state->setGain(0.42F, "com.spotify.client");
  box.state->toggleMute("net.minetest.minetest");
  box.state->setRouting("headset", "org.videolan.vlc");
}

namespace {

void fillEmptyForm(PreviewMachine& box) {
  box.addDevice("speakers", "Built-in Audio Analog Stereo");
  box.start();
  box.state->setDuckRule({{}, {}, 0.3F, 300, 1500});
  box.state->deleteProfile(box.state->profiles()->front().id);
}

void fillCrowded(PreviewMachine& box) {
  fillForms(box);
  auto rule = *box.state->duckRule();
  std::set<std::string> candidates;
  for (int number = 1; number <= 30; ++number) {
    const auto bundleID = "org.example.application-" + std::to_string(number);
    box.install(bundleID, "Application with a long name " + std::to_string(number));
    candidates.insert(bundleID);
    if (number <= 8) rule.triggerBundleIDs.insert(bundleID);
    box.state->addProfile("Profile number " + std::to_string(number));
  }
  box.state->setDuckRule(rule);
  box.state->setFocusCandidateBundleIDs(candidates);
  auto profile = box.state->profiles()->front();
  profile.name = "Everything that I have, and a name that is far too long for its place";
  profile.apps.clear();
  for (int number = 1; number <= 40; ++number) {
    profile.apps.push_back({"org.example.application-" + std::to_string(number),
                            "Application with a long name " + std::to_string(number),
                            static_cast<float>(number) / 40.0F, number % 5 == 0, std::nullopt});
  }
  box.state->updateProfile(profile);
}

void fillSwitchedOff(PreviewMachine& box) {
  fillForms(box);
  auto rule = *box.state->duckRule();
  rule.triggerBundleIDs = {"us.zoom.xos", "com.hnc.Discord"};
  rule.targetGain = 0.305F;
  box.state->setDuckRule(rule);
}

void fillProfiles(PreviewMachine& box) {
  fillForms(box);
  box.state->addProfile("Evening");
  box.state->addProfile("Deep work");
  box.state->applyProfile(box.state->profiles()->at(1).id);
}

void fillFocusForm(PreviewMachine& box) {
  fillForms(box);
  box.state->setFocusCandidateBundleIDs({"org.example.noise", "org.gnome.Rhythmbox3"});
  box.state->setPomodoroFocusBundleID("org.example.noise");
}

void fillPermissions(PreviewMachine& box, bool trusted, FocusAuthorization focus) {
  fillForms(box);
  box.desktop.permissions.setTrusted(trusted);
  box.desktop.permissions.setFocus(focus);
}

/// One browser in each state, all at once.
void fillBrowsers(PreviewMachine& box) {
  auto companions = std::make_unique<MemoryBrowserCompanions>();
  // The preview's own.
  const std::string version = "1.9.9";
  companions->set({{"chromium", version, version}, {"brave", "0.0.9", version}});
  box.machine.browserCompanions = std::move(companions);
  box.desktop.browserSetUp.setBrowsers({{"chromium", "Chromium", true},
                                        {"brave", "Brave", true},
                                        {"chrome", "Google Chrome", true},
                                        {"edge", "Microsoft Edge", false}});
  fillForms(box);
}

/// They stand at the end of a page that is longer than the window, and come when they have been looked for.
void showBrowsers(QQuickWindow& window) {
  auto* page = named(window, QStringLiteral("page"));
  if (page == nullptr) return;
  QObject::connect(&window, &QQuickWindow::afterAnimating, page, [page] {
    page->setProperty("contentY", std::max(0.0, page->property("contentHeight").toReal() - page->height()));
  });
}

/// Presses both buttons of permissions for which the desktop has no settings.
void grantInVain(QQuickWindow& window) {
  for (const auto* each : {"accessibility", "focusStatus"}) {
    auto* place = named(window, QString::fromLatin1(each));
    auto* action = place == nullptr ? nullptr : find(*place, [](QQuickItem& item) {
      return item.isVisible() && item.objectName() == QLatin1StringView("action");
    });
    if (action != nullptr) click(window, centreOf(*action));
    breathe(window);
  }
  move(window, {1, 1});
}

void fillWithoutSettings(PreviewMachine& box) {
  fillForms(box);
  box.desktop.permissions.setHasSettings(false);
}

/// Shows a section, and then does what else is to be done.
Act at(const std::string& section, Act act = {}) {
  return [section, act = std::move(act)](QQuickWindow& window) {
    ViewFactory::showSection(window, section);
    breathe(window);
    if (act) act(window);
  };
}

void scrollDown(QQuickWindow& window) {
  if (auto* page = named(window, "page")) {
    page->setProperty("contentY", std::max(0.0, page->property("contentHeight").toDouble() - page->height()));
  }
}

/// Types into whatever has the focus.
void type(QQuickWindow& window, const QString& text) {
  breathe(window);
  for (const auto letter : text) {
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
    QCoreApplication::sendEvent(&window, &press);
  }
}

Act pick(const QString& query) {
  return at("Auto-Duck", [query](QQuickWindow& window) {
    if (auto* page = named(window, "page")) page->setProperty("contentY", 400);
    breathe(window);
    clickButton(window, shownText("AutoDuckCanvas", "Add trigger app"));
    type(window, query);
  });
}

void editProfile(QQuickWindow& window) {
  clickButton(window, "Evening");
  breathe(window);
  if (auto* field = find(*window.contentItem(), [](QQuickItem& item) {
        return item.isVisible() &&
               item.property("placeholderText").toString() == shownText("ProfileEditor", "Profile name");
      })) {
    click(window, centreOf(*field));
  }
  type(window, " at home");
}

Act next(int steps, Act act = {}) {
  return [steps, act = std::move(act)](QQuickWindow& window) {
    for (int step = 0; step < steps; ++step) clickButton(window, shownText("OnboardingWindow", "Continue"));
    move(window, {1, 1});
    if (act) act(window);
  };
}

}  // namespace

std::vector<PreviewScene> formScenes() {
  return {
      {"duck", Window::main, fillForms, at("Auto-Duck")},
      {"duck-lists", Window::main, fillSwitchedOff, at("Auto-Duck", scrollDown)},
      {"duck-disabled", Window::main, fillSwitchedOff,
       at("Auto-Duck",
          [](QQuickWindow& window) {
            if (auto* page = named(window, "page")) page->setProperty("contentY", 380);
          })},
      {"duck-empty", Window::main, fillEmptyForm, at("Auto-Duck", scrollDown)},
      {"duck-crowded", Window::main, fillCrowded, at("Auto-Duck", scrollDown)},
      {"picker", Window::main, fillForms, pick({})},
      {"picker-filtered", Window::main, fillForms, pick("org.")},
      {"picker-no-match", Window::main, fillForms, pick("xyzzy")},
      {"focus-ready", Window::main, fillFocusForm, at("Focus")},
      {"focus-empty", Window::main, fillEmptyForm, at("Focus")},
      {"focus-crowded", Window::main, fillCrowded, at("Focus", scrollDown)},
      {"focus-running", Window::main,
       [](PreviewMachine& box) {
         fillFocusForm(box);
         box.state->startPomodoroFocus();
         box.advance(431);
       },
       at("Focus")},
      {"focus-break", Window::main,
       [](PreviewMachine& box) {
         fillFocusForm(box);
         box.state->startPomodoroFocus();
         box.state->skipPomodoroToBreak();
         box.advance(62);
       },
       at("Focus")},
      {"focus-hover", Window::main, fillFocusForm,
       at("Focus",
          [](QQuickWindow& window) {
            scrollDown(window);
            breathe(window);
            if (auto* cell = button(window, "Rhythmbox")) move(window, centreOf(*cell));
          })},
      {"profiles", Window::main, fillProfiles, at("Profiles")},
      {"profiles-selected", Window::main, fillProfiles,
       at("Profiles", [](QQuickWindow& window) { clickButton(window, "Evening"); })},
      {"profiles-dirty", Window::main, fillProfiles, at("Profiles", editProfile)},
      {"profiles-none", Window::main, fillEmptyForm, at("Profiles")},
      {"profiles-crowded", Window::main, fillCrowded, at("Profiles")},
      {"profiles-menu", Window::main, fillProfiles,
       at("Profiles",
          [](QQuickWindow& window) {
            if (auto* tile = button(window, "Deep work")) click(window, centreOf(*tile), Qt::RightButton);
          })},
      {"profiles-routes", Window::main, fillProfiles,
       at("Profiles",
          [](QQuickWindow& window) {
            clickButton(window, "Evening");
            breathe(window);
            clickButton(window, shownText("ProfileEntryRow", "Output for %1").arg("VLC"));
          })},
      {"settings", Window::main, fillForms, at("Settings")},
      {"settings-granted", Window::main,
       [](PreviewMachine& box) { fillPermissions(box, true, FocusAuthorization::authorized); }, at("Settings")},
      {"settings-denied", Window::main,
       [](PreviewMachine& box) { fillPermissions(box, false, FocusAuthorization::denied); }, at("Settings")},
      {"settings-browsers", Window::main, fillBrowsers, at("Settings", showBrowsers)},
      {"settings-nowhere", Window::main, fillWithoutSettings, at("Settings", grantInVain)},
      {"onboarding-welcome", Window::onboarding, fillForms, {}},
      {"onboarding-permissions", Window::onboarding, fillForms, next(1)},
      {"onboarding-granted", Window::onboarding,
       [](PreviewMachine& box) { fillPermissions(box, true, FocusAuthorization::authorized); }, next(1)},
      {"onboarding-denied", Window::onboarding,
       [](PreviewMachine& box) { fillPermissions(box, false, FocusAuthorization::denied); }, next(1)},
      {"onboarding-nowhere", Window::onboarding, fillWithoutSettings,
       next(1,
            [](QQuickWindow& window) {
              breathe(window);
              grantInVain(window);
            })},
  };
}

}  // namespace quillmere
