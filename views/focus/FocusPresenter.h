// The focus block's controls: its phase as texts and a ring, its lengths, and the application that may keep playing.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "views/shared/MenuModel.h"

namespace quillmere {

class MixerState;

/// [main]
class FocusPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(QString heading READ heading NOTIFY phaseChanged FINAL)
  Q_PROPERTY(QString explanation READ explanation NOTIFY phaseChanged FINAL)
  Q_PROPERTY(QString primaryText READ primaryText NOTIFY phaseChanged FINAL)
  Q_PROPERTY(QString primarySymbol READ primarySymbol NOTIFY phaseChanged FINAL)
  Q_PROPERTY(bool running READ running NOTIFY phaseChanged FINAL)
  Q_PROPERTY(QString phaseWord READ phaseWord NOTIFY phaseChanged FINAL)
  Q_PROPERTY(QString timeText READ timeText NOTIFY timeChanged FINAL)
  Q_PROPERTY(double progress READ progress NOTIFY timeChanged FINAL)
  Q_PROPERTY(QString focusLengthText READ focusLengthText NOTIFY phaseChanged FINAL)
  Q_PROPERTY(double focusLength READ focusLength NOTIFY phaseChanged FINAL)
  Q_PROPERTY(QString breakLengthText READ breakLengthText NOTIFY phaseChanged FINAL)
  Q_PROPERTY(double breakLength READ breakLength NOTIFY phaseChanged FINAL)
  Q_PROPERTY(QString focusAppName READ focusAppName NOTIFY appsChanged FINAL)
  Q_PROPERTY(quillmere::MenuModel* appMenu READ appMenu CONSTANT FINAL)

 public:
  FocusPresenter(std::shared_ptr<MixerState> state, const Runtime& runtime, QObject* parent = nullptr);
  ~FocusPresenter() override;

  [[nodiscard]] QString heading() const;
  [[nodiscard]] QString explanation() const;
  [[nodiscard]] QString primaryText() const;
  [[nodiscard]] QString primarySymbol() const;
  /// Whether there is something to cancel.
  [[nodiscard]] bool running() const;
  [[nodiscard]] QString phaseWord() const;
  [[nodiscard]] QString timeText() const;
  /// 0 to 1.
  [[nodiscard]] double progress() const;
  [[nodiscard]] QString focusLengthText() const;
  /// A slider's 0 to 1.
  [[nodiscard]] double focusLength() const;
  [[nodiscard]] QString breakLengthText() const;
  [[nodiscard]] double breakLength() const;
  [[nodiscard]] QString focusAppName() const;
  [[nodiscard]] MenuModel* appMenu() { return &appMenu_; }
  /// The countdown is kept up to date only while it can be seen.
  void setVisible(bool visible);

  /// Starts, or goes on to the next phase.
  Q_INVOKABLE void primaryAction();
  Q_INVOKABLE void cancel();
  Q_INVOKABLE void setFocusLength(double position);
  Q_INVOKABLE void setBreakLength(double position);

 Q_SIGNALS:
  void phaseChanged();
  void timeChanged();
  void appsChanged();

 private:
  void tellAll();
  void refreshApps();
  void scheduleTick();
  [[nodiscard]] double remainingSeconds() const;

  std::shared_ptr<MixerState> state_;
  Runtime runtime_;
  MenuModel appMenu_;
  bool visible_ = false;
  TimerID tickTimer_ = 0;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
