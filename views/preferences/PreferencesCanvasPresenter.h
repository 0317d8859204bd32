// What the page of the preferences shows.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <memory>
#include <vector>

#include "runtime/Observable.h"
#include "views/ViewServices.h"

namespace quillmere {

/// [main] Lives as long as its page shows.
class PreferencesCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
  Q_PROPERTY(bool scrollAdjusts READ scrollAdjusts WRITE setScrollAdjusts NOTIFY settingsChanged FINAL)
  Q_PROPERTY(bool showsDuckBanner READ showsDuckBanner WRITE setShowsDuckBanner NOTIFY settingsChanged FINAL)
  Q_PROPERTY(bool pausesOnDisconnect READ pausesOnDisconnect WRITE setPausesOnDisconnect NOTIFY settingsChanged FINAL)

 public:
  explicit PreferencesCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] bool scrollAdjusts() const;
  void setScrollAdjusts(bool adjusts);
  [[nodiscard]] bool showsDuckBanner() const;
  void setShowsDuckBanner(bool shows);
  [[nodiscard]] bool pausesOnDisconnect() const;
  void setPausesOnDisconnect(bool pauses);

 Q_SIGNALS:
  void settingsChanged();

 private:
  std::shared_ptr<MixerState> state_;
  std::shared_ptr<ViewSettings> settings_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
