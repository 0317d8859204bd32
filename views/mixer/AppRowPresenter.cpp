// One application's row.
#include "views/mixer/AppRowPresenter.h"

#include <algorithm>
#include <utility>

#include "core/ScrollRule.h"
#include "state/MixerState.h"
#include "views/mixer/DeviceMenus.h"
#include "views/shared/AppIconProvider.h"

namespace quillmere {

AppRowPresenter::AppRowPresenter(MixerState& state, AudioApp app, int tabLimit, TabListModel::Activate activateTab,
                                 QObject* parent)
    : QObject(parent), state_(state), app_(std::move(app)), tabs_(tabLimit, std::move(activateTab)) {
  look_ = appRowLook(app_, false, false, *state_.outputDevices());
}

MenuModel* AppRowPresenter::routeMenu() {
  if (!routeMenu_) {
    routeMenu_ = new MenuModel(this);
    fillRouteMenu();
  }
  return routeMenu_;
}

QUrl AppRowPresenter::iconSource() const { return AppIconProvider::urlFor(app_.bundleID); }

void AppRowPresenter::update(const AudioApp& app, bool isLive, bool isDucked) {
  if (app == app_ && isLive == look_.live && isDucked == look_.ducked) return;
  const auto before = std::exchange(app_, app);
  show(appRowLook(app_, isLive, isDucked, *state_.outputDevices()));
  if (before.routedDeviceUID != app_.routedDeviceUID) fillRouteMenu();
  if (before.gain != app_.gain) Q_EMIT gainChanged();
}

void AppRowPresenter::updateDevices() {
  show(appRowLook(app_, look_.live, look_.ducked, *state_.outputDevices()));
  fillRouteMenu();
}

void AppRowPresenter::setScrollAdjusts(bool adjusts) {
  if (scrollAdjusts_ == adjusts) return;
  scrollAdjusts_ = adjusts;
  Q_EMIT scrollAdjustsChanged();
}

void AppRowPresenter::release() {
  if (--holds_ == 0 && isLeaving_) deleteLater();
}

void AppRowPresenter::leave() {
  isLeaving_ = true;
  if (holds_ == 0) deleteLater();
}

void AppRowPresenter::setGain(double gain) { state_.setGain(static_cast<float>(gain), app_.bundleID); }

bool AppRowPresenter::scrollBy(double delta) {
  if (!scrollAdjusts_) return false;
  const float wanted = app_.gain + static_cast<float>(delta) * static_cast<float>(gainPerScrollUnit);
  state_.setGain(std::clamp(wanted, 0.0F, 1.0F), app_.bundleID);
  return true;
}

void AppRowPresenter::toggleMute() { state_.toggleMute(app_.bundleID); }

void AppRowPresenter::show(AppRowLook look) {
  if (look == look_) return;
  look_ = std::move(look);
  Q_EMIT lookChanged();
}

void AppRowPresenter::fillRouteMenu() {
  if (!routeMenu_) return;
  routeMenu_->setEntries(
      routeEntries(*state_.outputDevices(), app_.routedDeviceUID,
                   [this](std::optional<std::string> uid) { state_.setRouting(std::move(uid), app_.bundleID); }));
}

}  // namespace quillmere
