// The states of the program that pictures are taken of.
#pragma once

#include <functional>
#include <string>
#include <vector>

class QQuickWindow;

namespace quillmere {

class PreviewMachine;

struct PreviewScene {
  enum class Window { popover, main, onboarding, about };

  std::string name;
  Window window = Window::popover;
  /// Fills the machine and starts its state.
  std::function<void(PreviewMachine&)> fill;
  /// What is done in the window once it stands: clicks, hovering. May be empty.
  std::function<void(QQuickWindow&)> act;
};

[[nodiscard]] const std::vector<PreviewScene>& previewScenes();

}  // namespace quillmere
