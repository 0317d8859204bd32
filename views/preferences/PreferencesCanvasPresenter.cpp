// What the page of the preferences shows.
#include "views/preferences/PreferencesCanvasPresenter.h"

#include "state/MixerState.h"
#include "state/ViewSettings.h"

namespace quillmere {

PreferencesCanvasPresenter::PreferencesCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent), state_(services.state), settings_(services.settings) {
  const auto tell = [this](bool) { Q_EMIT settingsChanged(); };
  subscriptions_.push_back(state_->pauseOnHeadphoneDisconnect().observe(tell));
  subscriptions_.push_back(settings_->scrollOverRowAdjustsVolume().observe(tell));
  subscriptions_.push_back(settings_->showDuckBanner().observe(tell));
}

bool PreferencesCanvasPresenter::scrollAdjusts() const { return *settings_->scrollOverRowAdjustsVolume(); }

void PreferencesCanvasPresenter::setScrollAdjusts(bool adjusts) { settings_->setScrollOverRowAdjustsVolume(adjusts); }

bool PreferencesCanvasPresenter::showsDuckBanner() const { return *settings_->showDuckBanner(); }

void PreferencesCanvasPresenter::setShowsDuckBanner(bool shows) { settings_->setShowDuckBanner(shows); }

bool PreferencesCanvasPresenter::pausesOnDisconnect() const { return *state_->pauseOnHeadphoneDisconnect(); }

void PreferencesCanvasPresenter::setPausesOnDisconnect(bool pauses) { state_->setPauseOnHeadphoneDisconnect(pauses); }

}  // namespace quillmere
