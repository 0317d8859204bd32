// One application's row.
#include "views/mixer/AppRowPresenter.h"

#include <algorithm>
#include <utility>

#include "state/MixerState.h"
#include "views/shared/AppIconProvider.h"

namespace quillmere {

namespace {
/// Of the full scale, for each unit of a scroll.
constexpr float gainPerScrollUnit = 0.005F;
}  // namespace

AppRowPresenter::AppRowPresenter(MixerState& state, AudioApp app, int tabLimit, TabListModel::Activate activateTab,
                                 QObject* parent)
    : QObject(parent), state_(state), app_(std::move(app)), tabs_(tabLimit, std::move(activateTab)) {}

QUrl AppRowPresenter::iconSource() const { return AppIconProvider::urlFor(app_.bundleID); }

void AppRowPresenter::update(const AudioApp& app, bool isLive, bool isDucked) {
  const auto before = std::exchange(app_, app);
  fillRouteMenu();
  auto look = appRowLook(app, isLive, isDucked, *state_.outputDevices());
  if (look != look_) {
    look_ = std::move(look);
    Q_EMIT lookChanged();
  }
  if (before.gain != app_.gain) Q_EMIT gainChanged();
}

void AppRowPresenter::setScrollAdjusts(bool adjusts) {
  if (scrollAdjusts_ == adjusts) return;
  scrollAdjusts_ = adjusts;
  Q_EMIT scrollAdjustsChanged();
}

void AppRowPresenter::setGain(double gain) { state_.setGain(static_cast<float>(gain), app_.bundleID); }

bool AppRowPresenter::scrollBy(double delta) {
  if (!scrollAdjusts_) return false;
  const float wanted = app_.gain + static_cast<float>(delta) * gainPerScrollUnit;
  state_.setGain(std::clamp(wanted, 0.0F, 1.0F), app_.bundleID);
  return true;
}

void AppRowPresenter::toggleMute() { state_.toggleMute(app_.bundleID); }

void AppRowPresenter::fillRouteMenu() {
  std::vector<MenuEntry> entries;
  entries.push_back(
      {tr("System default"), !app_.routedDeviceUID, false, [this] { state_.setRouting(std::nullopt, app_.bundleID); }});
  entries.push_back(MenuEntry::divider());
  for (const auto& device : *state_.outputDevices()) {
    entries.push_back({QString::fromStdString(device.name), app_.routedDeviceUID == device.uid, false,
                       [this, uid = device.uid] { state_.setRouting(uid, app_.bundleID); }});
  }
  routeMenu_.setEntries(std::move(entries));
}

}  // namespace quillmere
