// Windows, menu bar, popover and scrolls put together.
#include "app/macos/MacProgramWindows.h"

#include <QFont>
#include <QGuiApplication>
#include <QWindow>
#include <optional>
#include <string>
#include <utility>

#include "app/macos/PopoverInMenuBar.h"
#include "app/macos/ScrollsOverSliders.h"
#include "app/macos/SymbolsOfTheSystem.h"
#include "app/oneprocess/LocalWindows.h"
#include "platform/macos/MacDesktop.h"
#include "platform/macos/MacStatusItem.h"
#include "platform/macos/MacWindowSystem.h"
#include "views/design/DesignTokens.h"
#include "windows/ProgramMenu.h"

namespace quillmere {

namespace {

constexpr const char* settingsSection = "Settings";

SceneHost sceneHost(MacStatusItem& icon) {
  SceneHost scenes;
  scenes.makeDesktop = makeMacDesktop;
  scenes.stage = std::make_unique<PopoverInMenuBar>([&icon] { return icon.button(); });
  scenes.prepare = useSymbolsOfTheSystem;
  scenes.givesIcon = false;
  scenes.fontFamily = [] { return QGuiApplication::font().family(); };
  scenes.made = [](QWindow& window, const std::string& identifier) {
    auto* view = reinterpret_cast<void*>(window.winId());
    MacWindowSystem::setIdentifier(view, identifier);
    if (identifier != ProgramWindows::mainWindow) return;
    constexpr auto ground = design::colour::canvasBG;
    MacWindowSystem::hideTitleBar(view, {ground.red, ground.green, ground.blue});
  };
  return scenes;
}

std::unique_ptr<WindowSystem> makeStanding(ProgramScenes& scenes, const WindowsIntents& /*intents*/) {
  MacWindowMaker maker;
  maker.open = [&scenes](const std::string& identifier) { scenes.open(identifier, std::nullopt); };
  maker.close = [&scenes](const std::string& identifier) { scenes.close(identifier); };
  return std::make_unique<MacWindowSystem>(std::move(maker));
}

class MacProgramWindows final : public LocalWindows {
 public:
  MacProgramWindows(const Runtime& runtime, std::shared_ptr<MixerState> state, WindowsIntents intents,
                    MacStatusItem& icon)
      : LocalWindows(runtime, std::move(state), sceneHost(icon), intents, makeStanding),
        menu_(menuIntents(*this, intents)) {}

 private:
  static ProgramMenuIntents menuIntents(WindowSystem& windows, const WindowsIntents& intents) {
    ProgramMenuIntents menu;
    menu.showAboutPanel = [&windows] { windows.showAboutPanel({}); };
    menu.openMainWindow = [open = intents.openMainWindow] { open({}); };
    menu.openSettings = [open = intents.openMainWindow] { open({settingsSection, {}}); };
    return menu;
  }

  ProgramMenu menu_;
  ScrollsOverSliders scrolls_;
};

}  // namespace

std::unique_ptr<ProgramWindows> makeMacProgramWindows(std::shared_ptr<MixerState> state, const Runtime& runtime,
                                                      WindowsIntents intents, MacStatusItem& icon) {
  return std::make_unique<MacProgramWindows>(runtime, std::move(state), std::move(intents), icon);
}

}  // namespace quillmere
