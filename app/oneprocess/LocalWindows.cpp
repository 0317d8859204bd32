// Orders as they come.
#include "app/oneprocess/LocalWindows.h"

#include <QPoint>
#include <utility>

namespace quillmere {

LocalWindows::LocalWindows(const Runtime& runtime, std::shared_ptr<MixerState> state, SceneHost host,
                           WindowsIntents intents, const MakeStanding& makeStanding)
    : intents_(std::move(intents)),
      scenes_(runtime, std::move(state), std::move(host), sceneIntents()),
      standing_(makeStanding(scenes_, intents_)) {
  connect(&scenes_, &ProgramScenes::shown, this, [this](const std::string& identifier) {
    if (identifier == mainWindow) intents_.mainWindowShown();
  });
}

LocalWindows::~LocalWindows() = default;

void LocalWindows::open(const std::string& identifier, const ActivationRequest& request) {
  scenes_.open(identifier, request.section);
}

void LocalWindows::togglePopover(const StatusItemActivation& activation) {
  PopoverPlace place;
  if (activation.at) place.click = QPoint(activation.at->x, activation.at->y);
  scenes_.togglePopover(place);
}

SceneIntents LocalWindows::sceneIntents() {
  SceneIntents scenes;
  scenes.openMainWindow = [this](const ActivationRequest& request) { intents_.openMainWindow(request); };
  scenes.finishOnboarding = [this] { intents_.finishOnboarding(); };
  scenes.quit = [this] { terminate(); };
  return scenes;
}

}  // namespace quillmere
