// Everything that the popover says and does.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "views/ViewIntents.h"
#include "views/mixer/AppRowModel.h"
#include "views/mixer/OutputPresenter.h"
#include "views/popover/ProfilesPresenter.h"
#include "views/popover/SleepTimerPresenter.h"

namespace quillmere {

class MixerState;
class ViewSettings;

/// [main] Made with its window and gone with it.
class MixerPanelPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its window")
  Q_PROPERTY(quillmere::AppRowModel* rows READ rows CONSTANT FINAL)
  Q_PROPERTY(quillmere::OutputPresenter* output READ output CONSTANT FINAL)
  Q_PROPERTY(quillmere::ProfilesPresenter* profiles READ profiles CONSTANT FINAL)
  Q_PROPERTY(quillmere::SleepTimerPresenter* sleepTimer READ sleepTimer CONSTANT FINAL)
  Q_PROPERTY(QString whisperColor READ whisperColor NOTIFY whisperChanged FINAL)
  Q_PROPERTY(QString whisperToolTip READ whisperToolTip NOTIFY whisperChanged FINAL)
  Q_PROPERTY(QString liveCountText READ liveCountText NOTIFY liveCountChanged FINAL)
  Q_PROPERTY(bool anyLive READ anyLive NOTIFY liveCountChanged FINAL)
  Q_PROPERTY(bool bannerShown READ bannerShown NOTIFY bannerChanged FINAL)
  Q_PROPERTY(QString bannerText READ bannerText NOTIFY bannerChanged FINAL)

 public:
  MixerPanelPresenter(std::shared_ptr<MixerState> state, const Runtime& runtime, std::shared_ptr<ViewSettings> settings,
                      ViewIntents intents, QObject* parent = nullptr);

  [[nodiscard]] AppRowModel* rows() { return &rows_; }
  [[nodiscard]] OutputPresenter* output() { return &output_; }
  [[nodiscard]] ProfilesPresenter* profiles() { return &profiles_; }
  [[nodiscard]] SleepTimerPresenter* sleepTimer() { return &sleepTimer_; }
  /// A colour token.
  [[nodiscard]] QString whisperColor() const;
  [[nodiscard]] QString whisperToolTip() const;
  /// "2 live".
  [[nodiscard]] QString liveCountText() const;
  [[nodiscard]] bool anyLive() const { return rows_.count() > 0; }
  [[nodiscard]] bool bannerShown() const;
  /// Stays as it was while the banner leaves.
  [[nodiscard]] QString bannerText() const { return bannerText_; }
  /// Told by the window: what counts time does so only while it can be seen.
  void setVisible(bool visible) { sleepTimer_.setVisible(visible); }

  Q_INVOKABLE void toggleWhisper();
  Q_INVOKABLE void openWindow();
  Q_INVOKABLE void quit();

 Q_SIGNALS:
  void whisperChanged();
  void liveCountChanged();
  void bannerChanged();

 private:
  void refreshBanner();

  std::shared_ptr<MixerState> state_;
  std::shared_ptr<ViewSettings> settings_;
  ViewIntents intents_;
  AppRowModel rows_;
  OutputPresenter output_;
  ProfilesPresenter profiles_;
  SleepTimerPresenter sleepTimer_;
  QString bannerText_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
