// Everything that the popover says and does.
#include "views/popover/MixerPanelPresenter.h"

#include <utility>

#include "state/MixerState.h"
#include "state/ViewSettings.h"

namespace quillmere {

MixerPanelPresenter::MixerPanelPresenter(std::shared_ptr<MixerState> state, const Runtime& runtime,
                                         std::shared_ptr<ViewSettings> settings, ViewIntents intents, QObject* parent)
    : QObject(parent),
      state_(std::move(state)),
      settings_(std::move(settings)),
      intents_(std::move(intents)),
      rows_(state_, *settings_, AppRowModel::Filter::live),
      output_(state_, runtime, DeviceSymbolStyle::small),
      profiles_(state_, intents_.openMainWindow),
      sleepTimer_(state_, runtime) {
  const auto refresh = [this](const auto&) { refreshBanner(); };
  subscriptions_.push_back(state_->isDucking().observe(refresh));
  subscriptions_.push_back(state_->duckedBundleIDs().observe(refresh));
  subscriptions_.push_back(settings_->showDuckBanner().observe(refresh));
  subscriptions_.push_back(state_->isWhisperMode().observe([this](bool) { Q_EMIT whisperChanged(); }));
  connect(&rows_, &AppRowModel::countChanged, this, &MixerPanelPresenter::liveCountChanged);
  refreshBanner();
}

QString MixerPanelPresenter::whisperColor() const {
  return *state_->isWhisperMode() ? QStringLiteral("brandSage") : QStringLiteral("textSecondary");
}

QString MixerPanelPresenter::whisperToolTip() const {
  return *state_->isWhisperMode() ? tr("Whisper Mode on — tap to restore") : tr("Whisper Mode (one-tap shush)");
}

QString MixerPanelPresenter::liveCountText() const { return tr("%n live", nullptr, rows_.count()); }

bool MixerPanelPresenter::bannerShown() const { return *state_->isDucking() && *settings_->showDuckBanner(); }

void MixerPanelPresenter::refreshBanner() {
  if (bannerShown()) {
    bannerText_ = state_->duckedBundleIDs()->empty() ? tr("On a call — the call's own audio can't be ducked.")
                                                     : tr("Music ducked while you're on a call.");
  }
  Q_EMIT bannerChanged();
}

void MixerPanelPresenter::toggleWhisper() { state_->toggleWhisperMode(); }

void MixerPanelPresenter::openWindow() { ask(intents_.openMainWindow); }

void MixerPanelPresenter::quit() { ask(intents_.quit); }

}  // namespace quillmere
