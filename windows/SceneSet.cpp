// Scenes by identifier.
#include "windows/SceneSet.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillmere {

namespace {
/// A window closed by mistake comes back at once; after this its memory goes back.
constexpr auto keepHidden = std::chrono::seconds(20);
}  // namespace

SceneSet::SceneSet(const Runtime& runtime, SightTest sight) : runtime_(runtime), sight_(std::move(sight)) {}

SceneSet::~SceneSet() = default;

void SceneSet::add(const std::string& identifier, WindowFactory factory) {
  auto scene = std::make_unique<Scene>(runtime_, std::move(factory), keepHidden, sight_);
  const auto isClosing = std::make_shared<bool>(false);
  connect(scene.get(), &Scene::shown, this, [this, identifier, isClosing] {
    *isClosing = false;
    Q_EMIT shown(identifier);
  });
  connect(scene.get(), &Scene::becameActive, this, [this, identifier] { Q_EMIT becameKey(identifier); });
  connect(scene.get(), &Scene::willClose, this, [this, identifier, isClosing] {
    *isClosing = true;
    Q_EMIT willClose(identifier);
  });
  connect(scene.get(), &Scene::hidden, this,
          [this, identifier, isClosing] { Q_EMIT hidden(identifier, std::exchange(*isClosing, false)); });
  scene->onDropped([this] { Q_EMIT dropped(); });
  scenes_[identifier] = std::move(scene);
}

void SceneSet::open(const std::string& identifier) {
  if (const auto scene = scenes_.find(identifier); scene != scenes_.end()) scene->second->show();
}

void SceneSet::close(const std::string& identifier) {
  const auto scene = scenes_.find(identifier);
  if (scene != scenes_.end() && scene->second->window() != nullptr) scene->second->window()->close();
}

void SceneSet::orderFront(const std::string& identifier) {
  const auto scene = scenes_.find(identifier);
  if (scene != scenes_.end() && scene->second->isVisible()) scene->second->show();
}

void SceneSet::activate() {
  for (const auto& [identifier, scene] : scenes_) {
    if (scene->isVisible()) scene->window()->requestActivate();
  }
}

QWindow* SceneSet::window(const std::string& identifier) const {
  const auto scene = scenes_.find(identifier);
  return scene != scenes_.end() ? scene->second->window() : nullptr;
}

bool SceneSet::isVisible(const std::string& identifier) const {
  const auto scene = scenes_.find(identifier);
  return scene != scenes_.end() && scene->second->isVisible();
}

bool SceneSet::holdsAny() const {
  return std::any_of(scenes_.begin(), scenes_.end(), [](const auto& each) { return each.second->window() != nullptr; });
}

}  // namespace quillmere
