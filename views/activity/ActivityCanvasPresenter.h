// What the page of the activity shows: four counts, each with a ring, and the applications.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "views/ViewServices.h"
#include "views/activity/ActivityRowModel.h"

namespace quillmere {

/// [main] Lives as long as its page shows. A ring's progress is 0 to 1; that of the triggers may be more.
class ActivityCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
  Q_PROPERTY(quillmere::ActivityRowModel* rows READ rows CONSTANT FINAL)
  Q_PROPERTY(QString liveValue READ liveValue NOTIFY mixChanged FINAL)
  Q_PROPERTY(double liveProgress READ liveProgress NOTIFY mixChanged FINAL)
  Q_PROPERTY(QString appsValue READ appsValue NOTIFY mixChanged FINAL)
  Q_PROPERTY(double appsProgress READ appsProgress NOTIFY mixChanged FINAL)
  Q_PROPERTY(bool anyApps READ anyApps NOTIFY mixChanged FINAL)
  Q_PROPERTY(QString profilesValue READ profilesValue NOTIFY profilesChanged FINAL)
  Q_PROPERTY(double profilesProgress READ profilesProgress NOTIFY profilesChanged FINAL)
  Q_PROPERTY(QString triggersValue READ triggersValue NOTIFY triggersChanged FINAL)
  Q_PROPERTY(double triggersProgress READ triggersProgress NOTIFY triggersChanged FINAL)

 public:
  explicit ActivityCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] ActivityRowModel* rows() { return &rows_; }
  [[nodiscard]] QString liveValue() const;
  /// The share of the applications that sounds.
  [[nodiscard]] double liveProgress() const;
  [[nodiscard]] QString appsValue() const;
  /// Full with eight applications.
  [[nodiscard]] double appsProgress() const;
  [[nodiscard]] bool anyApps() const;
  [[nodiscard]] QString profilesValue() const;
  /// Full with five profiles.
  [[nodiscard]] double profilesProgress() const;
  [[nodiscard]] QString triggersValue() const;
  /// Beside the number of triggers that a new rule has.
  [[nodiscard]] double triggersProgress() const;

 Q_SIGNALS:
  void mixChanged();
  void profilesChanged();
  void triggersChanged();

 private:
  void refreshMix();

  std::shared_ptr<MixerState> state_;
  ActivityRowModel rows_;
  std::size_t liveCount_ = 0;
  std::size_t appCount_ = 0;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
