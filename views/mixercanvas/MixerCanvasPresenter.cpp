// What the mixer's page shows.
#include "views/mixercanvas/MixerCanvasPresenter.h"

#include <utility>

#include "state/MixerState.h"
#include "state/ViewSettings.h"

namespace quillmere {

namespace {

double meanGain(const std::vector<AudioApp>& apps, const std::set<std::string>& live) {
  double sum = 0.0;
  int count = 0;
  for (const auto& app : apps) {
    if (!live.contains(app.bundleID)) continue;
    sum += static_cast<double>(app.gain);
    ++count;
  }
  return count > 0 ? sum / count : 0.0;
}

}  // namespace

MixerCanvasPresenter::MixerCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent),
      state_(services.state),
      settings_(services.settings),
      rows_(state_, *settings_, AppRowModel::Filter::all),
      output_(state_, services.runtime, DeviceSymbolStyle::large),
      nowPlaying_(services) {
  const auto mix = [this](const auto&) { refreshMix(); };
  const auto profiles = [this](const auto&) { Q_EMIT profilesChanged(); };
  subscriptions_.push_back(state_->apps().observe(mix));
  subscriptions_.push_back(state_->liveBundleIDs().observe(mix));
  subscriptions_.push_back(state_->isDucking().observe([this](bool) {
    Q_EMIT duckingChanged();
    Q_EMIT subtitleChanged();
  }));
  subscriptions_.push_back(state_->profiles().observe(profiles));
  subscriptions_.push_back(state_->activeProfileID().observe(profiles));
  subscriptions_.push_back(state_->isWhisperMode().observe([this](bool) { Q_EMIT whisperChanged(); }));
  refreshMix();
}

QString MixerCanvasPresenter::greeting() const {
  return anyLive() ? tr("Mixing %n sources.", nullptr, liveCount_) : tr("Quiet right now.");
}

QString MixerCanvasPresenter::sourcesText() const { return tr("%n sources", nullptr, liveCount_); }

QString MixerCanvasPresenter::liveTag() const { return anyLive() ? tr("Live") : tr("Idle"); }

QString MixerCanvasPresenter::liveCountText() const { return tr("%n live", nullptr, liveCount_); }

QString MixerCanvasPresenter::finderState() const { return anyLive() ? liveCountText() : tr("Listening"); }

QString MixerCanvasPresenter::subtitle() const {
  if (ducking()) return tr("Music ducked — a call is active.");
  if (appCount_ == 0) return tr("Open Spotify, Slack, a YouTube tab — apps appear here.");
  return tr("%n apps connected.", nullptr, appCount_);
}

bool MixerCanvasPresenter::ducking() const { return *state_->isDucking(); }

QString MixerCanvasPresenter::duckState() const { return ducking() ? tr("Ducking now") : tr("Standing by"); }

bool MixerCanvasPresenter::profileActive() const { return state_->activeProfileID()->has_value(); }

QString MixerCanvasPresenter::profilesState() const {
  return profileActive() ? tr("Profile active") : tr("%n saved", nullptr, static_cast<int>(state_->profiles()->size()));
}

bool MixerCanvasPresenter::whisperOn() const { return *state_->isWhisperMode(); }

QString MixerCanvasPresenter::whisperText() const {
  return whisperOn() ? tr("Whisper Mode on — tap to restore") : tr("Engage Whisper Mode");
}

void MixerCanvasPresenter::toggleWhisper() { state_->toggleWhisperMode(); }

void MixerCanvasPresenter::refreshMix() {
  const auto live = static_cast<int>(state_->liveBundleIDs()->size());
  const auto apps = static_cast<int>(state_->apps()->size());
  const auto gain = meanGain(*state_->apps(), *state_->liveBundleIDs());
  if (std::exchange(liveCount_, live) != live) Q_EMIT liveChanged();
  if (std::exchange(appCount_, apps) != apps) Q_EMIT subtitleChanged();
  if (std::exchange(averageGain_, gain) != gain) Q_EMIT averageGainChanged();
}

}  // namespace quillmere
