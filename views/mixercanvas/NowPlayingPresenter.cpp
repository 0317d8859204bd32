// The strip of what plays.
#include "views/mixercanvas/NowPlayingPresenter.h"

#include <utility>

#include "integrations/DesktopServices.h"
#include "state/MixerState.h"
#include "views/shared/AppIconProvider.h"

namespace quillmere {

NowPlayingPresenter::NowPlayingPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent), state_(services.state), desktop_(services.desktop) {
  subscriptions_.push_back(state_->nowPlaying().observe([this](const auto&) { refresh(); }));
  subscriptions_.push_back(desktop_.apps().revision().observe([this](auto) { refresh(); }));
  refresh();
}

QString NowPlayingPresenter::playSymbol() const {
  return look_.playing ? QStringLiteral("pause.fill") : QStringLiteral("play.fill");
}

QString NowPlayingPresenter::playText() const { return look_.playing ? tr("Pause") : tr("Play"); }

void NowPlayingPresenter::previous() { state_->previousTrack(); }

void NowPlayingPresenter::togglePlayPause() {
  if (look_.shown) state_->togglePlayPause();
}

void NowPlayingPresenter::next() { state_->nextTrack(); }

void NowPlayingPresenter::refresh() {
  NowPlayingLook look;
  if (const auto& track = *state_->nowPlaying()) {
    look.shown = true;
    look.playing = track->isPlaying;
    look.title = QString::fromStdString(track->title);
    look.artist = QString::fromStdString(track->artist.value_or(""));
    const auto& source = track->sourceBundleID;
    look.sourceText = tr("· %1").arg(source ? QString::fromStdString(desktop_.apps().name(*source)) : tr("Unknown"));
    if (source) look.iconSource = AppIconProvider::urlFor(*source);
  }
  // The position, which is told once a second, isn't shown.
  if (look == look_) return;
  look_ = std::move(look);
  Q_EMIT changed();
}

}  // namespace quillmere
