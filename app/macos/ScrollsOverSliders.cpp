// Asks the slider below the pointer.
#include "app/macos/ScrollsOverSliders.h"

#include <QQuickWindow>

#include "views/design/SliderHandle.h"

namespace quillmere {

namespace {

macos::ScrollCatch listener() {
  macos::ScrollCatch sliders;
  sliders.window = []() -> const void* {
    const auto* slider = SliderHandle::hovered();
    if (slider == nullptr || slider->window() == nullptr) return nullptr;
    return MacScrollMonitor::windowOf(reinterpret_cast<void*>(slider->window()->winId()));
  };
  sliders.isActive = [] { return SliderHandle::hovered() != nullptr; };
  sliders.onScroll = [](double delta) {
    auto* slider = SliderHandle::hovered();
    return slider != nullptr && slider->scrollBy(delta);
  };
  return sliders;
}

}  // namespace

ScrollsOverSliders::ScrollsOverSliders() : monitor_(listener()) {}

}  // namespace quillmere
