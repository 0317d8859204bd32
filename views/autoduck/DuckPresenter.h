// Auto-Duck's card: whether it acts, how far it turns down, how long it waits, and for which applications.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <memory>
#include <vector>

#include "runtime/Observable.h"

namespace quillmere {

class MixerState;

/// [main]
class DuckPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by its page's presenter")
  Q_PROPERTY(bool ducking READ ducking NOTIFY changed FINAL)
  Q_PROPERTY(QString statusText READ statusText NOTIFY changed FINAL)
  Q_PROPERTY(QString targetText READ targetText NOTIFY changed FINAL)
  Q_PROPERTY(double target READ target NOTIFY changed FINAL)
  Q_PROPERTY(QString delayText READ delayText NOTIFY changed FINAL)
  Q_PROPERTY(double delay READ delay NOTIFY changed FINAL)
  Q_PROPERTY(QString triggerCountText READ triggerCountText NOTIFY changed FINAL)
  Q_PROPERTY(QString triggerNames READ triggerNames NOTIFY changed FINAL)
  Q_PROPERTY(QString duckedCountText READ duckedCountText NOTIFY changed FINAL)
  Q_PROPERTY(QString duckedNames READ duckedNames NOTIFY changed FINAL)

 public:
  explicit DuckPresenter(std::shared_ptr<MixerState> state, QObject* parent = nullptr);

  [[nodiscard]] bool ducking() const;
  [[nodiscard]] QString statusText() const;
  [[nodiscard]] QString targetText() const;
  /// A slider's 0 to 1.
  [[nodiscard]] double target() const;
  [[nodiscard]] QString delayText() const;
  [[nodiscard]] double delay() const;
  [[nodiscard]] QString triggerCountText() const;
  /// The names of those that are listed, in the order of their identifiers, and how many others there are.
  [[nodiscard]] QString triggerNames() const;
  [[nodiscard]] QString duckedCountText() const;
  [[nodiscard]] QString duckedNames() const;

  Q_INVOKABLE void setTarget(double position);
  Q_INVOKABLE void setDelay(double position);

 Q_SIGNALS:
  void changed();

 private:
  std::shared_ptr<MixerState> state_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
