// What the mixer's page shows: the mix at a glance, the output, and every known application.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "views/ViewServices.h"
#include "views/mixer/AppRowModel.h"
#include "views/mixer/OutputPresenter.h"

namespace quillmere {

/// [main] Lives as long as its page shows.
class MixerCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
  Q_PROPERTY(quillmere::AppRowModel* rows READ rows CONSTANT FINAL)
  Q_PROPERTY(quillmere::OutputPresenter* output READ output CONSTANT FINAL)
  Q_PROPERTY(QString greeting READ greeting NOTIFY mixChanged FINAL)
  Q_PROPERTY(QString subtitle READ subtitle NOTIFY mixChanged FINAL)
  Q_PROPERTY(QString liveCountText READ liveCountText NOTIFY mixChanged FINAL)
  Q_PROPERTY(int liveCount READ liveCount NOTIFY mixChanged FINAL)
  Q_PROPERTY(double averageGain READ averageGain NOTIFY mixChanged FINAL)
  Q_PROPERTY(bool anyApps READ anyApps NOTIFY mixChanged FINAL)
  Q_PROPERTY(bool whisperOn READ whisperOn NOTIFY whisperChanged FINAL)
  Q_PROPERTY(QString whisperText READ whisperText NOTIFY whisperChanged FINAL)

 public:
  explicit MixerCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] AppRowModel* rows() { return &rows_; }
  [[nodiscard]] OutputPresenter* output() { return &output_; }
  [[nodiscard]] QString greeting() const;
  [[nodiscard]] QString subtitle() const;
  [[nodiscard]] QString liveCountText() const;
  [[nodiscard]] int liveCount() const;
  /// The mean gain of the applications that sound; 0 when none does.
  [[nodiscard]] double averageGain() const;
  [[nodiscard]] bool anyApps() const;
  [[nodiscard]] bool whisperOn() const;
  [[nodiscard]] QString whisperText() const;

  Q_INVOKABLE void toggleWhisper();

 Q_SIGNALS:
  void mixChanged();
  void whisperChanged();

 private:
  std::shared_ptr<MixerState> state_;
  /// The rows read them.
  std::shared_ptr<ViewSettings> settings_;
  AppRowModel rows_;
  OutputPresenter output_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
