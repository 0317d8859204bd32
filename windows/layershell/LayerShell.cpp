// Asks for the compositor's list of what it has.
#include "windows/LayerShell.h"

#include <wayland-client.h>

#include <string_view>

#include "layershell/LayerStage.h"

namespace quillmere::layershell {

namespace {

void globalFound(void* data, wl_registry* /*registry*/, std::uint32_t /*name*/, const char* interface,
                 std::uint32_t /*version*/) {
  if (std::string_view(interface) == "zwlr_layer_shell_v1") *static_cast<bool*>(data) = true;
}

void globalGone(void* /*data*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}

}  // namespace

bool isOffered() {
  wl_display* display = wl_display_connect(nullptr);
  if (display == nullptr) return false;
  bool isThere = false;
  static constexpr wl_registry_listener listener{globalFound, globalGone};
  wl_registry* registry = wl_display_get_registry(display);
  wl_registry_add_listener(registry, &listener, &isThere);
  wl_display_roundtrip(display);
  wl_registry_destroy(registry);
  wl_display_disconnect(display);
  return isThere;
}

std::unique_ptr<PopoverStage> makeStage(const Runtime& runtime) { return std::make_unique<LayerStage>(runtime); }

}  // namespace quillmere::layershell
