// What the keyboard is on, on each kind of control.
#include "views/preview/KeyScenes.h"

#include <QQuickItem>
#include <QQuickWindow>

#include "views/ViewFactory.h"
#include "views/preview/FormScenes.h"
#include "views/preview/PreviewGestures.h"
#include "views/preview/PreviewMachine.h"

namespace quillmere {

namespace {

using Window = PreviewScene::Window;
using Wanted = std::function<bool(QQuickItem&)>;

void comeTo(QQuickWindow& window, const Wanted& wanted) {
  if (auto* item = find(*window.contentItem(), wanted)) item->forceActiveFocus(Qt::TabFocusReason);
  breathe(window);
}

/// An item by the property that names it for screen readers.
Wanted with(const char* property, const QString& text) {
  return [property, text](QQuickItem& item) {
    return item.isVisible() && item.activeFocusOnTab() && item.property(property).toString().startsWith(text);
  };
}

/// The part of a labelled control that takes the keys.
Wanted partOf(const QString& label, const QString& part) {
  return [label, part](QQuickItem& item) {
    const auto* control = item.parentItem();
    return item.isVisible() && item.objectName() == part && control != nullptr &&
           control->property("label").toString() == label;
  };
}

/// The section that is shown.
bool isChosen(QQuickItem& item) { return item.isVisible() && item.property("isSelected").toBool(); }

std::function<void(QQuickWindow&)> at(const std::string& section, const Wanted& wanted) {
  return [section, wanted](QQuickWindow& window) {
    ViewFactory::showSection(window, section);
    breathe(window);
    comeTo(window, wanted);
  };
}

void fillProfilesForKeys(PreviewMachine& box) {
  fillForms(box);
  box.state->addProfile("Evening");
}

}  // namespace

std::vector<PreviewScene> keyScenes() {
  return {
      {"keys-popover", Window::popover, fillForms,
       [](QQuickWindow& window) { comeTo(window, with("text", shownText("MuteButton", "Mute %1").arg("Spotify"))); }},
      {"keys-popover-slider", Window::popover, fillForms,
       [](QQuickWindow& window) { comeTo(window, partOf("Spotify", "handle")); }},
      {"keys-sidebar", Window::main, fillForms, [](QQuickWindow& window) { comeTo(window, isChosen); }},
      {"keys-card", Window::main, fillForms,
       [](QQuickWindow& window) { comeTo(window, partOf("Google Chrome", "handle")); }},
      {"keys-toggle", Window::main, fillForms,
       at("Settings", with("label", shownText("PreferencesCanvas", "Show duck banner during calls")))},
      {"keys-cell", Window::main, fillForms, at("Focus", with("text", "Spotify"))},
      {"keys-tile", Window::main, fillProfilesForKeys, at("Profiles", with("text", "Evening"))},
      {"keys-button", Window::main, fillProfilesForKeys,
       at("Profiles", with("text", shownText("ProfileEditor", "Sync from current mixer")))},
      {"keys-onboarding", Window::onboarding, fillForms,
       [](QQuickWindow& window) { comeTo(window, with("text", shownText("OnboardingWindow", "Continue"))); }},
  };
}

}  // namespace quillmere
