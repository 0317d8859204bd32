// The settings page: switches, permissions, and what this program is.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "views/ViewServices.h"
#include "views/preferences/BrowserCompanionsPresenter.h"
#include "views/preferences/LaunchAtLoginPresenter.h"
#include "views/shared/PermissionsPresenter.h"

namespace quillmere {

class MixerState;
class ViewSettings;
class Workspace;

/// "1.2 (345)"; what is empty is a dash.
[[nodiscard]] QString versionText(std::string_view version, std::string_view build);

/// [main] Lives as long as its page shows: meanwhile the permissions are read again and again.
class PreferencesCanvasPresenter final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made with its page")
  Q_PROPERTY(bool scrollAdjusts READ scrollAdjusts WRITE setScrollAdjusts NOTIFY settingsChanged FINAL)
  Q_PROPERTY(bool showsDuckBanner READ showsDuckBanner WRITE setShowsDuckBanner NOTIFY settingsChanged FINAL)
  Q_PROPERTY(bool pausesOnDisconnect READ pausesOnDisconnect WRITE setPausesOnDisconnect NOTIFY settingsChanged FINAL)
  Q_PROPERTY(QString version READ version CONSTANT FINAL)
  Q_PROPERTY(quillmere::LaunchAtLoginPresenter* launchAtLogin READ launchAtLogin CONSTANT FINAL)
  Q_PROPERTY(quillmere::PermissionsPresenter* permissions READ permissions CONSTANT FINAL)
  Q_PROPERTY(quillmere::BrowserCompanionsPresenter* browserCompanions READ browserCompanions CONSTANT FINAL)

 public:
  explicit PreferencesCanvasPresenter(const ViewServices& services, QObject* parent = nullptr);

  [[nodiscard]] bool scrollAdjusts() const;
  void setScrollAdjusts(bool adjusts);
  [[nodiscard]] bool showsDuckBanner() const;
  void setShowsDuckBanner(bool shows);
  [[nodiscard]] bool pausesOnDisconnect() const;
  void setPausesOnDisconnect(bool pauses);
  [[nodiscard]] QString version() const;
  [[nodiscard]] LaunchAtLoginPresenter* launchAtLogin() { return &launchAtLogin_; }
  [[nodiscard]] PermissionsPresenter* permissions() { return &permissions_; }
  [[nodiscard]] BrowserCompanionsPresenter* browserCompanions() { return &browserCompanions_; }

  Q_INVOKABLE void openWebsite();
  Q_INVOKABLE void sendFeedback();

 Q_SIGNALS:
  void settingsChanged();

 private:
  void open(std::string url);

  std::shared_ptr<MixerState> state_;
  std::shared_ptr<ViewSettings> settings_;
  Runtime runtime_;
  Workspace& workspace_;
  LaunchAtLoginPresenter launchAtLogin_;
  PermissionsPresenter permissions_;
  BrowserCompanionsPresenter browserCompanions_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
