// What the main window shows.
#include "views/mainwindow/MainWindowPresenter.h"

#include <utility>

#include "state/MixerState.h"
#include "state/ViewSettings.h"

namespace quillmere {

MainWindowPresenter::MainWindowPresenter(std::shared_ptr<MixerState> state, const Runtime& runtime,
                                         std::shared_ptr<ViewSettings> settings, const ViewIntents& intents,
                                         QObject* parent)
    : QObject(parent),
      state_(std::move(state)),
      settings_(std::move(settings)),
      rows_(state_, *settings_, AppRowModel::Filter::all, intents.activateTab),
      output_(state_, runtime, DeviceSymbolStyle::large),
      profiles_(state_, intents.openMainWindow),
      profileList_(state_),
      sleepTimer_(state_, runtime),
      focus_(state_, runtime),
      duck_(state_) {
  const auto follow = [this](const auto& field, void (MainWindowPresenter::*changed)()) {
    subscriptions_.push_back(field.observe([this, changed](const auto&) { Q_EMIT(this->*changed)(); }));
  };
  follow(state_->apps(), &MainWindowPresenter::mixChanged);
  follow(state_->liveBundleIDs(), &MainWindowPresenter::mixChanged);
  follow(state_->isDucking(), &MainWindowPresenter::mixChanged);
  follow(state_->isWhisperMode(), &MainWindowPresenter::whisperChanged);
  follow(state_->pauseOnHeadphoneDisconnect(), &MainWindowPresenter::settingsChanged);
  follow(settings_->scrollOverRowAdjustsVolume(), &MainWindowPresenter::settingsChanged);
  follow(settings_->showDuckBanner(), &MainWindowPresenter::settingsChanged);
}

QString MainWindowPresenter::greeting() const {
  const auto count = state_->liveBundleIDs()->size();
  if (count == 0) return tr("Quiet right now.");
  return count == 1 ? tr("Mixing 1 source.") : tr("Mixing %1 sources.").arg(count);
}

QString MainWindowPresenter::subtitle() const {
  if (*state_->isDucking()) return tr("Music ducked — a call is active.");
  const auto count = state_->apps()->size();
  if (count == 0) return tr("Open Spotify, Slack, a YouTube tab — apps appear here.");
  return count == 1 ? tr("1 app connected.") : tr("%1 apps connected.").arg(count);
}

QString MainWindowPresenter::liveCountText() const { return tr("%1 live").arg(state_->liveBundleIDs()->size()); }

int MainWindowPresenter::liveCount() const { return static_cast<int>(state_->liveBundleIDs()->size()); }

double MainWindowPresenter::averageGain() const {
  double sum = 0.0;
  int count = 0;
  for (const auto& app : *state_->apps()) {
    if (!state_->liveBundleIDs()->contains(app.bundleID)) continue;
    sum += static_cast<double>(app.gain);
    ++count;
  }
  return count > 0 ? sum / count : 0.0;
}

bool MainWindowPresenter::anyApps() const { return !state_->apps()->empty(); }

bool MainWindowPresenter::whisperOn() const { return *state_->isWhisperMode(); }

QString MainWindowPresenter::whisperText() const {
  return whisperOn() ? tr("Whisper Mode on — tap to restore") : tr("Engage Whisper Mode");
}

bool MainWindowPresenter::scrollAdjusts() const { return *settings_->scrollOverRowAdjustsVolume(); }

void MainWindowPresenter::setScrollAdjusts(bool adjusts) { settings_->setScrollOverRowAdjustsVolume(adjusts); }

bool MainWindowPresenter::showsDuckBanner() const { return *settings_->showDuckBanner(); }

void MainWindowPresenter::setShowsDuckBanner(bool shows) { settings_->setShowDuckBanner(shows); }

bool MainWindowPresenter::pausesOnDisconnect() const { return *state_->pauseOnHeadphoneDisconnect(); }

void MainWindowPresenter::setPausesOnDisconnect(bool pauses) { state_->setPauseOnHeadphoneDisconnect(pauses); }

void MainWindowPresenter::setVisible(bool visible) {
  sleepTimer_.setVisible(visible);
  focus_.setVisible(visible);
}

void MainWindowPresenter::toggleWhisper() { state_->toggleWhisperMode(); }

}  // namespace quillmere
