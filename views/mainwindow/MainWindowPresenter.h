// What the main window shows: every application, the output, and the automations within reach.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "views/ViewFactory.h"
#include "views/mainwindow/DuckPresenter.h"
#include "views/mainwindow/FocusPresenter.h"
#include "views/mainwindow/ProfileListModel.h"
#include "views/mixer/AppRowModel.h"
#include "views/mixer/OutputPresenter.h"
#include "views/popover/ProfilesPresenter.h"
#include "views/popover/SleepTimerPresenter.h"

namespace quillmere {

class MixerState;
class ViewSettings;

/// [main] Made with its window and gone with it.
class MainWindowPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its window")
  Q_PROPERTY(quillmere::AppRowModel* rows READ rows CONSTANT FINAL)
  Q_PROPERTY(quillmere::OutputPresenter* output READ output CONSTANT FINAL)
  Q_PROPERTY(quillmere::ProfilesPresenter* profiles READ profiles CONSTANT FINAL)
  Q_PROPERTY(quillmere::ProfileListModel* profileList READ profileList CONSTANT FINAL)
  Q_PROPERTY(quillmere::SleepTimerPresenter* sleepTimer READ sleepTimer CONSTANT FINAL)
  Q_PROPERTY(quillmere::FocusPresenter* focus READ focus CONSTANT FINAL)
  Q_PROPERTY(quillmere::DuckPresenter* duck READ duck CONSTANT FINAL)
  Q_PROPERTY(QString greeting READ greeting NOTIFY mixChanged FINAL)
  Q_PROPERTY(QString subtitle READ subtitle NOTIFY mixChanged FINAL)
  Q_PROPERTY(QString liveCountText READ liveCountText NOTIFY mixChanged FINAL)
  Q_PROPERTY(int liveCount READ liveCount NOTIFY mixChanged FINAL)
  Q_PROPERTY(double averageGain READ averageGain NOTIFY mixChanged FINAL)
  Q_PROPERTY(bool anyApps READ anyApps NOTIFY mixChanged FINAL)
  Q_PROPERTY(bool whisperOn READ whisperOn NOTIFY whisperChanged FINAL)
  Q_PROPERTY(QString whisperText READ whisperText NOTIFY whisperChanged FINAL)
  Q_PROPERTY(bool scrollAdjusts READ scrollAdjusts WRITE setScrollAdjusts NOTIFY settingsChanged FINAL)
  Q_PROPERTY(bool showsDuckBanner READ showsDuckBanner WRITE setShowsDuckBanner NOTIFY settingsChanged FINAL)
  Q_PROPERTY(bool pausesOnDisconnect READ pausesOnDisconnect WRITE setPausesOnDisconnect NOTIFY settingsChanged FINAL)

 public:
  MainWindowPresenter(std::shared_ptr<MixerState> state, const Runtime& runtime, std::shared_ptr<ViewSettings> settings,
                      const ViewIntents& intents, QObject* parent = nullptr);

  [[nodiscard]] AppRowModel* rows() { return &rows_; }
  [[nodiscard]] OutputPresenter* output() { return &output_; }
  [[nodiscard]] ProfilesPresenter* profiles() { return &profiles_; }
  [[nodiscard]] ProfileListModel* profileList() { return &profileList_; }
  [[nodiscard]] SleepTimerPresenter* sleepTimer() { return &sleepTimer_; }
  [[nodiscard]] FocusPresenter* focus() { return &focus_; }
  [[nodiscard]] DuckPresenter* duck() { return &duck_; }
  [[nodiscard]] QString greeting() const;
  [[nodiscard]] QString subtitle() const;
  [[nodiscard]] QString liveCountText() const;
  [[nodiscard]] int liveCount() const;
  /// The mean gain of the applications that sound; 0 when none does.
  [[nodiscard]] double averageGain() const;
  [[nodiscard]] bool anyApps() const;
  [[nodiscard]] bool whisperOn() const;
  [[nodiscard]] QString whisperText() const;
  [[nodiscard]] bool scrollAdjusts() const;
  void setScrollAdjusts(bool adjusts);
  [[nodiscard]] bool showsDuckBanner() const;
  void setShowsDuckBanner(bool shows);
  [[nodiscard]] bool pausesOnDisconnect() const;
  void setPausesOnDisconnect(bool pauses);
  /// Told by the window: what counts time does so only while it can be seen.
  void setVisible(bool visible);

  Q_INVOKABLE void toggleWhisper();

 Q_SIGNALS:
  void mixChanged();
  void whisperChanged();
  void settingsChanged();

 private:
  std::shared_ptr<MixerState> state_;
  std::shared_ptr<ViewSettings> settings_;
  AppRowModel rows_;
  OutputPresenter output_;
  ProfilesPresenter profiles_;
  ProfileListModel profileList_;
  SleepTimerPresenter sleepTimer_;
  FocusPresenter focus_;
  DuckPresenter duck_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
