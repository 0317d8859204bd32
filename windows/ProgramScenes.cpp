// Windows, and what they are made of.
#include "windows/ProgramScenes.h"

#include <QApplication>
#include <QQuickWindow>
#include <QScreen>
#include <utility>
#include <vector>

#include "core/Product.h"
#include "integrations/DesktopServices.h"
#include "state/MixerState.h"
#include "state/ViewSettings.h"
#include "views/AboutWindow.h"
#include "views/ViewFactory.h"
#include "views/design/Appearance.h"
#include "windows/BrandIconImage.h"
#include "windows/NativeWindow.h"
#include "windows/WindowFit.h"

namespace quillmere {

namespace {

constexpr const char* mainWindow = "main";
constexpr const char* onboardingWindow = "onboarding";
constexpr const char* settingsSection = "Settings";

/// Puts a window that is not shown yet into the middle of its screen, where the desktop lets a program choose.
void centre(QWindow& window) {
  QRect place(QPoint(), window.size());
  place.moveCenter(window.screen()->availableGeometry().center());
  window.setPosition(place.topLeft());
}

/// What the mixer lists runs, even where the desktop knows nothing of it.
std::vector<RunningApplication> soundingIn(const MixerState& state) {
  std::vector<RunningApplication> running;
  for (const auto& app : *state.apps()) running.push_back({app.bundleID, app.name, 0});
  return running;
}

}  // namespace

ProgramScenes::ProgramScenes(const Runtime& runtime, std::shared_ptr<MixerState> state, SceneHost host,
                             SceneIntents intents)
    : runtime_(runtime),
      state_(std::move(state)),
      host_(std::move(host)),
      intents_(std::move(intents)),
      scenes_(runtime, host_.sight),
      keys_(keyIntents()),
      popover_(
          runtime, [this]() -> std::unique_ptr<QWindow> { return served(factory().makePopover()); },
          std::move(host_.stage), host_.sight),
      about_(runtime, [this]() -> std::unique_ptr<QWindow> { return makeAbout(); }, Duration::zero(), host_.sight) {
  scenes_.add(mainWindow, [this]() -> std::unique_ptr<QWindow> {
    giveIcon();
    auto window = served(factory().makeMainWindow());
    keepOnScreen(*window);
    tellWhenMade(*window, mainWindow);
    return window;
  });
  scenes_.add(onboardingWindow, [this]() -> std::unique_ptr<QWindow> {
    giveIcon();
    auto window = served(factory().makeOnboarding());
    keepOnScreen(*window);
    centre(*window);
    tellWhenMade(*window, onboardingWindow);
    return window;
  });
  connect(&scenes_, &SceneSet::shown, this, &ProgramScenes::shown);
  connect(&scenes_, &SceneSet::becameKey, this, &ProgramScenes::becameKey);
  connect(&scenes_, &SceneSet::willClose, this, &ProgramScenes::willClose);
  connect(&scenes_, &SceneSet::hidden, this, &ProgramScenes::hidden);
  connect(&scenes_, &SceneSet::dropped, this, &ProgramScenes::dropped);
  connect(&popover_, &PopoverController::dropped, this, &ProgramScenes::dropped);
  about_.onDropped([this] { Q_EMIT dropped(); });
}

ProgramScenes::~ProgramScenes() {
  // Windows that go with this are nobody's news.
  disconnect(this, nullptr, nullptr, nullptr);
}

void ProgramScenes::open(const std::string& identifier, const std::optional<std::string>& section) {
  if (host_.closesPopoverFirst) popover_.close();
  scenes_.open(identifier);
  // After it: it is the popover that has been clicked, and a desktop that asks for a reason takes no other. And no
  // later: as long as the popover is there the keyboard may be its alone.
  popover_.close();
  if (!section || identifier != mainWindow) return;
  // Before its next picture, whether the window is new or was there.
  if (auto* window = qobject_cast<QQuickWindow*>(scenes_.window(identifier))) {
    ViewFactory::showSection(*window, *section);
  }
}

bool ProgramScenes::holdsAny() const { return scenes_.holdsAny() || popover_.isHeld() || about_.window() != nullptr; }

std::unique_ptr<QWindow> ProgramScenes::makeAbout() {
  giveIcon();
  factory();
  return served(makeAboutWindow(QCoreApplication::applicationVersion()));
}

/// Desktops show it beside the titles of windows that they list.
void ProgramScenes::giveIcon() const {
  if (host_.givesIcon) QApplication::setWindowIcon(QIcon(BrandIconImage::dock(128, 1.0)));
}

void ProgramScenes::tellWhenMade(QWindow& window, const std::string& identifier) {
  if (!host_.made) return;
  onNativeWindow(window, [made = host_.made, identifier](QWindow& native) { made(native, identifier); });
}

template <typename Window>
std::unique_ptr<Window> ProgramScenes::served(std::unique_ptr<Window> window) {
  keys_.serve(*window);
  return window;
}

KeyIntents ProgramScenes::keyIntents() {
  KeyIntents intents;
  intents.openMainWindow = [this] { intents_.openMainWindow({}); };
  intents.openSettings = [this] { intents_.openMainWindow({settingsSection, {}}); };
  intents.quit = [this] { intents_.quit(); };
  return intents;
}

ViewFactory& ProgramScenes::factory() {
  // What draws a window comes with the first one.
  if (!factory_) {
    if (host_.prepare) host_.prepare();
    ViewIntents intents;
    intents.openMainWindow = [this] { intents_.openMainWindow({}); };
    intents.quit = [this] { intents_.quit(); };
    intents.onboardingFinished = [this] { intents_.finishOnboarding(); };
    desktop_ = std::make_unique<DesktopServices>(host_.makeDesktop(), runtime_,
                                                 [state = state_] { return soundingIn(*state); });
    if (host_.fontFamily) Appearance::shared().setFontFamily(host_.fontFamily());
    desktop_->look().onWished([](const LookWishes& wishes) {
      Appearance::shared().setReducesMotion(wishes.reducesMotion);
      Appearance::shared().setWantsContrast(wishes.wantsContrast);
    });
    factory_ = std::make_unique<ViewFactory>(ViewServices{state_, runtime_, std::make_shared<ViewSettings>(*state_),
                                                          *desktop_, std::move(intents), std::string(appVersion())});
  }
  return *factory_;
}

}  // namespace quillmere
