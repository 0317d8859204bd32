// The settings page.
#include "views/preferences/PreferencesCanvasPresenter.h"

#include <utility>

#include "core/Product.h"
#include "integrations/DesktopServices.h"
#include "platform/Workspace.h"
#include "state/MixerState.h"
#include "state/ViewSettings.h"

namespace quillmere {

QString versionText(std::string_view version, std::string_view build) {
  const auto shown = [](std::string_view text) {
    return text.empty() ? QStringLiteral("—") : QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  };
  return QStringLiteral("%1 (%2)").arg(shown(version), shown(build));
}

PreferencesCanvasPresenter::PreferencesCanvasPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent),
      state_(services.state),
      settings_(services.settings),
      runtime_(services.runtime),
      workspace_(services.desktop.workspace()),
      launchAtLogin_(services),
      permissions_(services),
      browserCompanions_(services) {
  const auto tell = [this](bool) { Q_EMIT settingsChanged(); };
  subscriptions_.push_back(settings_->scrollOverRowAdjustsVolume().observe(tell));
  subscriptions_.push_back(settings_->showDuckBanner().observe(tell));
  subscriptions_.push_back(state_->pauseOnHeadphoneDisconnect().observe(tell));
  permissions_.setVisible(true);
}

bool PreferencesCanvasPresenter::scrollAdjusts() const { return *settings_->scrollOverRowAdjustsVolume(); }

void PreferencesCanvasPresenter::setScrollAdjusts(bool adjusts) { settings_->setScrollOverRowAdjustsVolume(adjusts); }

bool PreferencesCanvasPresenter::showsDuckBanner() const { return *settings_->showDuckBanner(); }

void PreferencesCanvasPresenter::setShowsDuckBanner(bool shows) { settings_->setShowDuckBanner(shows); }

bool PreferencesCanvasPresenter::pausesOnDisconnect() const { return *state_->pauseOnHeadphoneDisconnect(); }

void PreferencesCanvasPresenter::setPausesOnDisconnect(bool pauses) { state_->setPauseOnHeadphoneDisconnect(pauses); }

QString PreferencesCanvasPresenter::version() const { return versionText(bundleVersion(), buildNumber()); }

void PreferencesCanvasPresenter::openWebsite() { open(std::string(webAddress())); }

void PreferencesCanvasPresenter::sendFeedback() {
  open("mailto:" + std::string(feedbackMailbox()) + "?subject=quillmere%20feedback");
}

void PreferencesCanvasPresenter::open(std::string url) {
  // Whoever opens it may be slow to answer.
  runtime_.background.post([&workspace = workspace_, url = std::move(url)] { workspace.openURL(url); });
}

}  // namespace quillmere
