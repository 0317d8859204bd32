// The sections of the main window: a line each.
#include "views/mainwindow/Section.h"

#include <QCoreApplication>
#include <algorithm>

#include "views/ViewServices.h"
#include "views/activity/ActivityCanvasPresenter.h"
#include "views/autoduck/AutoDuckCanvasPresenter.h"
#include "views/focus/FocusCanvasPresenter.h"
#include "views/mixercanvas/MixerCanvasPresenter.h"
#include "views/preferences/PreferencesCanvasPresenter.h"
#include "views/profiles/ProfilesCanvasPresenter.h"

namespace quillmere {

namespace {

struct Entry {
  const char* rawValue;
  const char* symbol;
  const char* canvas;
  std::unique_ptr<QObject> (*makePresenter)(const ViewServices& services);
};

template <typename Presenter>
std::unique_ptr<QObject> make(const ViewServices& services) {
  return std::make_unique<Presenter>(services);
}

// In the order of allSections.
constexpr std::array entries{
    Entry{QT_TRANSLATE_NOOP("MainWindow", "Mixer"), "slider.horizontal.3", "MixerCanvas", make<MixerCanvasPresenter>},
    Entry{QT_TRANSLATE_NOOP("MainWindow", "Profiles"), "rectangle.stack", "ProfilesCanvas",
          make<ProfilesCanvasPresenter>},
    Entry{QT_TRANSLATE_NOOP("MainWindow", "Activity"), "waveform.path", "ActivityCanvas",
          make<ActivityCanvasPresenter>},
    Entry{QT_TRANSLATE_NOOP("MainWindow", "Auto-Duck"), "waveform.badge.minus", "AutoDuckCanvas",
          make<AutoDuckCanvasPresenter>},
    Entry{QT_TRANSLATE_NOOP("MainWindow", "Focus"), "timer", "FocusCanvas", make<FocusCanvasPresenter>},
    Entry{QT_TRANSLATE_NOOP("MainWindow", "Settings"), "gearshape", "PreferencesCanvas",
          make<PreferencesCanvasPresenter>},
};
static_assert(entries.size() == allSections.size());

const Entry& entryOf(Section section) { return entries[static_cast<std::size_t>(section)]; }

}  // namespace

QString rawValue(Section section) { return QString::fromLatin1(entryOf(section).rawValue); }

std::optional<Section> sectionOf(const QString& rawValue) {
  const auto found = std::ranges::find_if(
      allSections, [&](Section each) { return rawValue == QLatin1StringView(entryOf(each).rawValue); });
  return found == allSections.end() ? std::nullopt : std::optional(*found);
}

QString titleOf(Section section) { return QCoreApplication::translate("MainWindow", entryOf(section).rawValue); }

QString symbolOf(Section section) { return QString::fromLatin1(entryOf(section).symbol); }

QString canvasOf(Section section) { return QString::fromLatin1(entryOf(section).canvas); }

std::unique_ptr<QObject> makeCanvasPresenter(Section section, const ViewServices& services) {
  return entryOf(section).makePresenter(services);
}

}  // namespace quillmere
