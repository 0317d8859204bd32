// Asks the scenes.
#include "app/oneprocess/ToolkitWindowSystem.h"

#include <utility>

#include "platform/ProgramWindows.h"
#include "windows/ProgramScenes.h"

namespace quillmere {

ToolkitWindowSystem::ToolkitWindowSystem(ProgramScenes& scenes, std::function<void()> terminate)
    : scenes_(scenes), terminate_(std::move(terminate)) {
  connect(&scenes_, &ProgramScenes::becameKey, this, [this](const std::string& identifier) {
    for (const auto& observer : becameKey_) observer(identifier);
  });
  connect(&scenes_, &ProgramScenes::willClose, this, [this](const std::string& identifier) {
    for (const auto& observer : willClose_) observer(identifier);
  });
}

ToolkitWindowSystem::~ToolkitWindowSystem() = default;

std::vector<WindowInfo> ToolkitWindowSystem::windows() const {
  std::vector<WindowInfo> found;
  for (const auto* identifier : {ProgramWindows::mainWindow, ProgramWindows::onboardingWindow}) {
    found.push_back({identifier, scenes_.isVisible(identifier)});
  }
  return found;
}

void ToolkitWindowSystem::open(const std::string& identifier) { scenes_.open(identifier, std::nullopt); }

void ToolkitWindowSystem::close(const std::string& identifier) { scenes_.close(identifier); }

void ToolkitWindowSystem::orderFront(const std::string& identifier) { scenes_.orderFront(identifier); }

void ToolkitWindowSystem::activate() { scenes_.activate(); }

void ToolkitWindowSystem::showAboutPanel(const std::string& /*activationToken*/) { scenes_.showAboutPanel(); }

}  // namespace quillmere
