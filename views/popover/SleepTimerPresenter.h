// The sleep timer's control: the choices while it is off, the countdown while it runs.
// The countdown ticks only while somebody can see it.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "views/shared/MenuModel.h"
#include "views/shared/SecondsTicker.h"

namespace quillmere {

class MixerState;

/// [main]
class SleepTimerPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(bool running READ running NOTIFY runningChanged FINAL)
  Q_PROPERTY(QString remaining READ remaining NOTIFY remainingChanged FINAL)
  Q_PROPERTY(quillmere::MenuModel* menu READ menu CONSTANT FINAL)

 public:
  SleepTimerPresenter(std::shared_ptr<MixerState> state, const Runtime& runtime, QObject* parent = nullptr);

  [[nodiscard]] bool running() const;
  /// "12:34"; empty while the timer is off.
  [[nodiscard]] QString remaining() const;
  [[nodiscard]] MenuModel* menu() { return &menu_; }
  /// Whether the countdown is to be kept up to date.
  void setVisible(bool visible);

  Q_INVOKABLE void cancel();

 Q_SIGNALS:
  void runningChanged();
  void remainingChanged();

 private:
  void followTime();

  std::shared_ptr<MixerState> state_;
  Runtime runtime_;
  MenuModel menu_;
  bool visible_ = false;
  SecondsTicker ticker_;
  Subscription subscription_;
};

}  // namespace quillmere
