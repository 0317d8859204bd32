// What the mixer's page shows.
#include "views/mixercanvas/MixerCanvasPresenter.h"

#include "state/MixerState.h"
#include "state/ViewSettings.h"

namespace quillmere {

MixerCanvasPresenter::MixerCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent),
      state_(services.state),
      settings_(services.settings),
      rows_(state_, *settings_, AppRowModel::Filter::all, services.intents.activateTab),
      output_(state_, services.runtime, DeviceSymbolStyle::large) {
  const auto follow = [this](const auto& field, void (MixerCanvasPresenter::*changed)()) {
    subscriptions_.push_back(field.observe([this, changed](const auto&) { Q_EMIT(this->*changed)(); }));
  };
  follow(state_->apps(), &MixerCanvasPresenter::mixChanged);
  follow(state_->liveBundleIDs(), &MixerCanvasPresenter::mixChanged);
  follow(state_->isDucking(), &MixerCanvasPresenter::mixChanged);
  follow(state_->isWhisperMode(), &MixerCanvasPresenter::whisperChanged);
}

QString MixerCanvasPresenter::greeting() const {
  const auto count = state_->liveBundleIDs()->size();
  if (count == 0) return tr("Quiet right now.");
  return count == 1 ? tr("Mixing 1 source.") : tr("Mixing %1 sources.").arg(count);
}

QString MixerCanvasPresenter::subtitle() const {
  if (*state_->isDucking()) return tr("Music ducked — a call is active.");
  const auto count = state_->apps()->size();
  if (count == 0) return tr("Open Spotify, Slack, a YouTube tab — apps appear here.");
  return count == 1 ? tr("1 app connected.") : tr("%1 apps connected.").arg(count);
}

QString MixerCanvasPresenter::liveCountText() const { return tr("%1 live").arg(state_->liveBundleIDs()->size()); }

int MixerCanvasPresenter::liveCount() const { return static_cast<int>(state_->liveBundleIDs()->size()); }

double MixerCanvasPresenter::averageGain() const {
  double sum = 0.0;
  int count = 0;
  for (const auto& app : *state_->apps()) {
    if (!state_->liveBundleIDs()->contains(app.bundleID)) continue;
    sum += static_cast<double>(app.gain);
    ++count;
  }
  return count > 0 ? sum / count : 0.0;
}

bool MixerCanvasPresenter::anyApps() const { return !state_->apps()->empty(); }

bool MixerCanvasPresenter::whisperOn() const { return *state_->isWhisperMode(); }

QString MixerCanvasPresenter::whisperText() const {
  return whisperOn() ? tr("Whisper Mode on — tap to restore") : tr("Engage Whisper Mode");
}

void MixerCanvasPresenter::toggleWhisper() { state_->toggleWhisperMode(); }

}  // namespace quillmere
