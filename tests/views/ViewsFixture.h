// What the views' tests share: the state on a machine in memory, the views' settings, and readers for menus.
#pragma once

#include <QString>
#include <QStringList>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "StateFixture.h"
#include "integrations/DesktopServices.h"
#include "platform/memory/MemoryDesktop.h"
#include "state/ViewSettings.h"
#include "views/ViewServices.h"
#include "views/shared/MenuModel.h"

namespace quillmere {

class ViewsFixture : public StateFixture {
 public:
  ~ViewsFixture() override;

 protected:
  ViewsFixture();

  /// Starts the state and the views' settings.
  void startViews();
  /// A music player, a meeting application and an editor run; those named sound.
  void startWithSounding(const std::vector<std::string>& sounding);
  /// An application starts or stops sounding, and the list has noticed.
  void sound(const std::string& bundleID, bool sounds);
  [[nodiscard]] std::shared_ptr<AppState> sharedState() const;
  [[nodiscard]] ViewIntents intents();
  /// What the pages stand on; this program's version is 1.9.9.
  [[nodiscard]] ViewServices services();
  /// What the windows know of `desktop`; made with the first question, which takes its ports over. The mixer's
  /// applications run there.
  [[nodiscard]] DesktopServices& desktopServices();

  /// Titles with "* " before those that are marked, and "-" for a divider.
  static QStringList titles(const MenuModel& menu);
  static void choose(MenuModel& menu, const QString& title);

  MemoryDesktop desktop;
  std::shared_ptr<ViewSettings> settings;
  int onboardingsFinished = 0;
  int windowsOpened = 0;
  int quits = 0;

 private:
  std::unique_ptr<DesktopServices> desktopServices_;
};

void PrintTo(const QString& text, std::ostream* out);
void PrintTo(const QStringList& texts, std::ostream* out);

}  // namespace quillmere
