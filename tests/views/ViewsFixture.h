// What the views' tests share: the state on a machine in memory, the views' settings, and readers for menus.
#pragma once

#include <QString>
#include <QStringList>
#include <memory>

#include "StateFixture.h"
#include "integrations/DesktopServices.h"
#include "platform/memory/MemoryDesktop.h"
#include "state/ViewSettings.h"
#include "views/ViewServices.h"
#include "views/shared/MenuModel.h"

namespace quillmere {

class ViewsFixture : public StateFixture {
 protected:
  /// Starts the state and the views' settings.
  void startViews() {
    box->start();
    settings = std::make_shared<ViewSettings>(state());
    forget();
  }
  /// A music player, a meeting application and an editor run; those named sound.
  void startWithSounding(const std::vector<std::string>& sounding) {
    box->launch(spotify, "Spotify");
    box->launch(zoom, "Zoom");
    box->launch(editor, "Editor");
    for (const auto& bundleID : sounding) box->setSounding(bundleID, true);
    startViews();
  }
  /// An application starts or stops sounding, and the list has noticed.
  void sound(const std::string& bundleID, bool sounds) {
    box->setSounding(bundleID, sounds);
    box->detect();
    if (!sounds) box->advanceSeconds(2);
  }
  [[nodiscard]] std::shared_ptr<AppState> sharedState() const { return box->state; }
  [[nodiscard]] ViewIntents intents() {
    ViewIntents made;
    made.openMainWindow = [this] { ++windowsOpened; };
    made.quit = [this] { ++quits; };
    made.onboardingFinished = [this] { ++onboardingsFinished; };
    return made;
  }
  /// What the pages stand on; this program's version is 1.9.9.
  [[nodiscard]] ViewServices services() {
    return {sharedState(), box->runtime, settings, desktopServices(), intents(), "1.9.9"};
  }
  /// What the windows know of `desktop`; made with the first question, which takes its ports over. The mixer's
  /// applications run there.
  [[nodiscard]] DesktopServices& desktopServices() {
    if (!desktopServices_) {
      desktopServices_ = std::make_unique<DesktopServices>(std::move(desktop.desktop), box->runtime, [this] {
        std::vector<RunningApplication> running;
        for (const auto& app : *state().apps()) running.push_back({app.bundleID, app.name, 0});
        return running;
      });
    }
    return *desktopServices_;
  }

  /// Titles with "* " before those that are marked, and "-" for a divider.
  static QStringList titles(const MenuModel& menu) {
    QStringList result;
    for (const auto& entry : menu.entries()) {
      result.append(entry.isDivider ? QStringLiteral("-") : (entry.checked ? "* " : "") + entry.title);
    }
    return result;
  }
  static void choose(MenuModel& menu, const QString& title) {
    for (int row = 0; row < menu.rowCount(); ++row) {
      if (menu.entries()[static_cast<std::size_t>(row)].title != title) continue;
      menu.trigger(row);
      return;
    }
    FAIL() << "no entry " << title.toStdString();
  }

  MemoryDesktop desktop;
  std::shared_ptr<ViewSettings> settings;
  int onboardingsFinished = 0;
  int windowsOpened = 0;
  int quits = 0;

 private:
  std::unique_ptr<DesktopServices> desktopServices_;
};

inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
inline void PrintTo(const QStringList& texts, std::ostream* out) {
  *out << '"' << texts.join("\", \"").toStdString() << '"';
}

}  // namespace quillmere
