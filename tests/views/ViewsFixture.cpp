// What the views' tests do with their state, their desktop and their menus. Compiled once for all of them, since it
// was nearly half of what each took.
#include "ViewsFixture.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <utility>

namespace quillmere {

ViewsFixture::ViewsFixture() = default;
ViewsFixture::~ViewsFixture() = default;

void ViewsFixture::startViews() {
  box->start();
  settings = std::make_shared<ViewSettings>(state());
  forget();
}

void ViewsFixture::startWithSounding(const std::vector<std::string>& sounding) {
  box->launch(spotify, "Spotify");
  box->launch(zoom, "Zoom");
  box->launch(editor, "Editor");
  for (const auto& bundleID : sounding) box->setSounding(bundleID, true);
  startViews();
}

void ViewsFixture::sound(const std::string& bundleID, bool sounds) {
  box->setSounding(bundleID, sounds);
  box->detect();
  if (!sounds) box->advanceSeconds(2);
}

std::shared_ptr<AppState> ViewsFixture::sharedState() const { return box->state; }

ViewIntents ViewsFixture::intents() {
  ViewIntents made;
  made.openMainWindow = [this] { ++windowsOpened; };
  made.quit = [this] { ++quits; };
  made.onboardingFinished = [this] { ++onboardingsFinished; };
  return made;
}

ViewServices ViewsFixture::services() {
  return {sharedState(), box->runtime, settings, desktopServices(), intents(), "1.9.9"};
}

DesktopServices& ViewsFixture::desktopServices() {
  if (!desktopServices_) {
    desktopServices_ = std::make_unique<DesktopServices>(std::move(desktop.desktop), box->runtime, [this] {
      std::vector<RunningApplication> running;
      for (const auto& app : *state().apps()) running.push_back({app.bundleID, app.name, 0});
      return running;
    });
  }
  return *desktopServices_;
}

QStringList ViewsFixture::titles(const MenuModel& menu) {
  QStringList result;
  for (const auto& entry : menu.entries()) {
    result.append(entry.isDivider ? QStringLiteral("-") : (entry.checked ? "* " : "") + entry.title);
  }
  return result;
}

void ViewsFixture::choose(MenuModel& menu, const QString& title) {
  for (int row = 0; row < menu.rowCount(); ++row) {
    if (menu.entries()[static_cast<std::size_t>(row)].title != title) continue;
    menu.trigger(row);
    return;
  }
  FAIL() << "no entry " << title.toStdString();
}

void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
void PrintTo(const QStringList& texts, std::ostream* out) { *out << '"' << texts.join("\", \"").toStdString() << '"'; }

}  // namespace quillmere
