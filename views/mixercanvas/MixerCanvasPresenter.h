// What the mixer's page shows: the mix at a glance, what plays, the features' states, the output, every application.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "views/ViewServices.h"
#include "views/mixer/AppRowModel.h"
#include "views/mixer/OutputPresenter.h"
#include "views/mixercanvas/NowPlayingPresenter.h"

namespace quillmere {

/// [main] Lives as long as its page shows.
class MixerCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
  Q_PROPERTY(quillmere::AppRowModel* rows READ rows CONSTANT FINAL)
  Q_PROPERTY(quillmere::OutputPresenter* output READ output CONSTANT FINAL)
  Q_PROPERTY(quillmere::NowPlayingPresenter* nowPlaying READ nowPlaying CONSTANT FINAL)
  Q_PROPERTY(int liveCount READ liveCount NOTIFY liveChanged FINAL)
  Q_PROPERTY(bool anyLive READ anyLive NOTIFY liveChanged FINAL)
  Q_PROPERTY(QString greeting READ greeting NOTIFY liveChanged FINAL)
  Q_PROPERTY(QString sourcesText READ sourcesText NOTIFY liveChanged FINAL)
  Q_PROPERTY(QString liveTag READ liveTag NOTIFY liveChanged FINAL)
  Q_PROPERTY(QString liveCountText READ liveCountText NOTIFY liveChanged FINAL)
  Q_PROPERTY(QString finderState READ finderState NOTIFY liveChanged FINAL)
  Q_PROPERTY(double averageGain READ averageGain NOTIFY averageGainChanged FINAL)
  Q_PROPERTY(bool anyApps READ anyApps NOTIFY subtitleChanged FINAL)
  Q_PROPERTY(QString subtitle READ subtitle NOTIFY subtitleChanged FINAL)
  Q_PROPERTY(bool ducking READ ducking NOTIFY duckingChanged FINAL)
  Q_PROPERTY(QString duckState READ duckState NOTIFY duckingChanged FINAL)
  Q_PROPERTY(bool profileActive READ profileActive NOTIFY profilesChanged FINAL)
  Q_PROPERTY(QString profilesState READ profilesState NOTIFY profilesChanged FINAL)
  Q_PROPERTY(bool whisperOn READ whisperOn NOTIFY whisperChanged FINAL)
  Q_PROPERTY(QString whisperText READ whisperText NOTIFY whisperChanged FINAL)

 public:
  explicit MixerCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] AppRowModel* rows() { return &rows_; }
  [[nodiscard]] OutputPresenter* output() { return &output_; }
  [[nodiscard]] NowPlayingPresenter* nowPlaying() { return &nowPlaying_; }
  [[nodiscard]] int liveCount() const { return liveCount_; }
  [[nodiscard]] bool anyLive() const { return liveCount_ > 0; }
  [[nodiscard]] QString greeting() const;
  /// "3 sources".
  [[nodiscard]] QString sourcesText() const;
  /// "Live" or "Idle".
  [[nodiscard]] QString liveTag() const;
  /// "3 live".
  [[nodiscard]] QString liveCountText() const;
  /// "3 live" or "Listening".
  [[nodiscard]] QString finderState() const;
  /// The mean gain of the listed applications that sound; 0 when none does.
  [[nodiscard]] double averageGain() const { return averageGain_; }
  [[nodiscard]] bool anyApps() const { return appCount_ > 0; }
  [[nodiscard]] QString subtitle() const;
  [[nodiscard]] bool ducking() const;
  [[nodiscard]] QString duckState() const;
  [[nodiscard]] bool profileActive() const;
  [[nodiscard]] QString profilesState() const;
  [[nodiscard]] bool whisperOn() const;
  [[nodiscard]] QString whisperText() const;

  Q_INVOKABLE void toggleWhisper();

 Q_SIGNALS:
  void liveChanged();
  void averageGainChanged();
  void subtitleChanged();
  void duckingChanged();
  void profilesChanged();
  void whisperChanged();

 private:
  void refreshMix();

  std::shared_ptr<MixerState> state_;
  /// The rows read them.
  std::shared_ptr<ViewSettings> settings_;
  AppRowModel rows_;
  OutputPresenter output_;
  NowPlayingPresenter nowPlaying_;
  int liveCount_ = 0;
  int appCount_ = 0;
  double averageGain_ = 0.0;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
