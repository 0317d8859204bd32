// Auto-Duck's page: how far music is turned down, the times, and the two lists of applications.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <memory>

#include "runtime/Observable.h"
#include "views/ViewServices.h"
#include "views/autoduck/DuckListModel.h"
#include "views/picker/AppPickerPresenter.h"

namespace quillmere {

class MixerState;

/// [main] Lives as long as its page shows. Positions are a slider's 0 to 1; a rule from elsewhere may lie outside.
class AutoDuckCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
  Q_PROPERTY(QString targetText READ targetText NOTIFY ruleChanged FINAL)
  Q_PROPERTY(double target READ target NOTIFY ruleChanged FINAL)
  Q_PROPERTY(QString fadeText READ fadeText NOTIFY ruleChanged FINAL)
  Q_PROPERTY(double fade READ fade NOTIFY ruleChanged FINAL)
  Q_PROPERTY(QString delayText READ delayText NOTIFY ruleChanged FINAL)
  Q_PROPERTY(double delay READ delay NOTIFY ruleChanged FINAL)
  Q_PROPERTY(quillmere::DuckListModel* triggers READ triggers CONSTANT FINAL)
  Q_PROPERTY(quillmere::DuckListModel* ducked READ ducked CONSTANT FINAL)
  Q_PROPERTY(quillmere::AppPickerPresenter* picker READ picker CONSTANT FINAL)

 public:
  explicit AutoDuckCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] QString targetText() const;
  [[nodiscard]] double target() const;
  [[nodiscard]] QString fadeText() const;
  [[nodiscard]] double fade() const;
  [[nodiscard]] QString delayText() const;
  [[nodiscard]] double delay() const;
  [[nodiscard]] DuckListModel* triggers() { return &triggers_; }
  [[nodiscard]] DuckListModel* ducked() { return &ducked_; }
  [[nodiscard]] AppPickerPresenter* picker() { return &picker_; }

  Q_INVOKABLE void setTarget(double position);
  Q_INVOKABLE void setFade(double position);
  Q_INVOKABLE void setDelay(double position);
  // Each opens the picker for one of the lists.
  Q_INVOKABLE void addTrigger();
  Q_INVOKABLE void addDucked();

 Q_SIGNALS:
  void ruleChanged();

 private:
  template <typename Change>
  void change(Change change);
  void pickFor(DuckListModel& list);

  std::shared_ptr<MixerState> state_;
  DuckListModel triggers_;
  DuckListModel ducked_;
  AppPickerPresenter picker_;
  Subscription subscription_;
};

}  // namespace quillmere
