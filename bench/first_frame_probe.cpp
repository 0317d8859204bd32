// Tells when windows are mapped and when their first picture stands on the screen.
// Prints "ready", then for every window that appears "mapped PID NS" and "drawn PID NS" with its process and the
// monotonic clock in nanoseconds. A window counts as drawn once it holds more colours than a background has. The
// program ends with its standard input.
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>

namespace {

/// Antialiased text alone has more; a bare background, also a patterned one, has fewer.
constexpr std::size_t colours = 8;

struct Window {
  std::uint32_t process = 0;
  bool isDrawn = false;
};

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

long long now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

xcb_atom_t atom(xcb_connection_t* display, const char* name) {
  const auto cookie = xcb_intern_atom(display, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(display, cookie, nullptr), &std::free);
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::uint32_t processOf(xcb_connection_t* display, xcb_window_t window, xcb_atom_t property) {
  const auto cookie = xcb_get_property(display, 0, window, property, XCB_ATOM_CARDINAL, 0, 1);
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(display, cookie, nullptr), &std::free);
  if (!reply || xcb_get_property_value_length(reply.get()) < 4) return 0;
  return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
}

bool isViewable(xcb_connection_t* display, xcb_window_t window) {
  const Reply<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(display, xcb_get_window_attributes(display, window), nullptr), &std::free);
  return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// True once the window holds a picture.
bool isDrawn(xcb_connection_t* display, xcb_window_t window) {
  const Reply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(display, xcb_get_geometry(display, window), nullptr), &std::free);
  if (!geometry) return false;
  const Reply<xcb_get_image_reply_t> image(
      xcb_get_image_reply(
          display,
          xcb_get_image(display, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, geometry->width, geometry->height, ~0U),
          nullptr),
      &std::free);
  if (!image) return false;
  const auto* pixels = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get()));
  const auto count = static_cast<std::size_t>(xcb_get_image_data_length(image.get())) / sizeof(std::uint32_t);
  std::unordered_set<std::uint32_t> seen;
  std::uint32_t last = 0;
  for (std::size_t index = 0; index < count && seen.size() < colours; ++index) {
    if (index != 0 && pixels[index] == last) continue;
    last = pixels[index];
    seen.insert(last & 0xFFFFFFU);
  }
  return seen.size() >= colours;
}

}  // namespace

int main() {
  auto* display = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(display) != 0) {
    std::fputs("no display\n", stderr);
    return EXIT_FAILURE;
  }
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
  const auto property = atom(display, "_NET_WM_PID");
  const std::uint32_t children = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(display, root, XCB_CW_EVENT_MASK, &children);
  // The answer to anything asked now means that the wish above is in force.
  atom(display, "_NET_WM_PID");
  std::puts("ready");
  std::fflush(stdout);

  const auto tell = [](const char* what, const Window& window) {
    std::printf("%s %u %lld\n", what, window.process, now());
    std::fflush(stdout);
  };
  std::map<xcb_window_t, Window> windows;
  const auto noteMapped = [&](xcb_window_t id) {
    if (windows.contains(id)) return;
    const auto process = processOf(display, id, property);
    if (process == 0) return;
    windows[id] = {process, false};
    tell("mapped", windows[id]);
  };
  for (;;) {
    while (auto* raw = xcb_poll_for_event(display)) {
      const Reply<xcb_generic_event_t> event(raw, &std::free);
      const auto kind = event->response_type & 0x7F;
      if (kind == XCB_CREATE_NOTIFY) {
        // A window manager puts windows into frames: from here on the window is watched itself.
        const auto& created = *reinterpret_cast<const xcb_create_notify_event_t*>(event.get());
        const std::uint32_t structure = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(display, created.window, XCB_CW_EVENT_MASK, &structure);
        if (isViewable(display, created.window)) noteMapped(created.window);
      } else if (kind == XCB_MAP_NOTIFY) {
        noteMapped(reinterpret_cast<const xcb_map_notify_event_t*>(event.get())->window);
      } else if (kind == XCB_UNMAP_NOTIFY) {
        windows.erase(reinterpret_cast<const xcb_unmap_notify_event_t*>(event.get())->window);
      }
    }
    if (xcb_connection_has_error(display) != 0) return EXIT_FAILURE;
    bool awaitsPicture = false;
    for (auto& [id, window] : windows) {
      if (window.isDrawn) continue;
      window.isDrawn = isDrawn(display, id);
      if (window.isDrawn) tell("drawn", window);
      awaitsPicture |= !window.isDrawn;
    }
    pollfd sources[]{{STDIN_FILENO, POLLIN, 0}, {xcb_get_file_descriptor(display), POLLIN, 0}};
    // Answers bring events along, which the descriptor then tells nothing of: the wait has an end.
    poll(sources, 2, awaitsPicture ? 1 : 20);
    if (sources[0].revents != 0) return EXIT_SUCCESS;
  }
}
