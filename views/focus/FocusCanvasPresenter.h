// The focus page: the phase as texts and a ring, the block's lengths, and the application that may keep playing.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "views/ViewServices.h"
#include "views/focus/FocusCellModel.h"
#include "views/picker/AppPickerPresenter.h"
#include "views/shared/SecondsTicker.h"

namespace quillmere {

class MixerState;

/// [main] Lives as long as its page shows.
class FocusCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
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
  Q_PROPERTY(double focusStep READ focusStep CONSTANT FINAL)
  Q_PROPERTY(double breakStep READ breakStep CONSTANT FINAL)
  Q_PROPERTY(quillmere::FocusCellModel* cells READ cells CONSTANT FINAL)
  Q_PROPERTY(quillmere::AppPickerPresenter* picker READ picker CONSTANT FINAL)

 public:
  explicit FocusCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

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
  /// A minute on either slider.
  [[nodiscard]] static double focusStep();
  [[nodiscard]] static double breakStep();
  [[nodiscard]] FocusCellModel* cells() { return &cells_; }
  [[nodiscard]] AppPickerPresenter* picker() { return &picker_; }

  /// Starts, or goes on to the next phase.
  Q_INVOKABLE void primaryAction();
  Q_INVOKABLE void cancel();
  Q_INVOKABLE void setFocusLength(double position);
  Q_INVOKABLE void setBreakLength(double position);
  /// Opens the picker for another application that may keep playing.
  Q_INVOKABLE void addApp();

 Q_SIGNALS:
  void phaseChanged();
  void timeChanged();

 private:
  void tellAll();
  [[nodiscard]] double remainingSeconds() const;

  std::shared_ptr<MixerState> state_;
  Runtime runtime_;
  FocusCellModel cells_;
  AppPickerPresenter picker_;
  SecondsTicker ticker_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
