// The toolkit takes a token on Wayland only.
#include "windows/Launch.h"

#include "windows/X11.h"

// The library's interface has been the same since 2012, but it wants to be told that this is known. Its headers bring
// names that no header of the toolkit's can stand after.
#define SN_API_NOT_YET_FROZEN
#include <libsn/sn.h>

namespace quillmere {

void completeLaunch(const std::string& token) {
  auto* server = x11::connection();
  if (server == nullptr || token.empty()) return;
  auto* display = sn_xcb_display_new(server, nullptr, nullptr);
  constexpr int screen = 0;
  auto* launch = sn_launchee_context_new(display, screen, token.c_str());
  sn_launchee_context_complete(launch);
  sn_launchee_context_unref(launch);
  sn_display_unref(display);
  xcb_flush(server);
}

}  // namespace quillmere
