// A source that is ready by the clock alone.
#include "loop/HostTimer.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "loop/HostLoop.h"

namespace quillmere {

namespace {

constexpr gint64 never = -1;

gboolean dispatch(GSource* source, GSourceFunc callback, gpointer data) {
  g_source_set_ready_time(source, never);
  return callback(data);
}

}  // namespace

HostTimer::HostTimer(HostLoop& loop, std::function<void()> fire) {
  static GSourceFuncs functions{nullptr, nullptr, dispatch, nullptr, nullptr, nullptr};
  source_.reset(g_source_new(&functions, sizeof(GSource)));
  setWork(source_.get(), [fire = std::move(fire)] {
    fire();
    return G_SOURCE_CONTINUE;
  });
  g_source_attach(source_.get(), loop.context());
}

void HostTimer::set(std::optional<Duration> delay) {
  if (!delay) {
    g_source_set_ready_time(source_.get(), never);
    return;
  }
  const auto micros = std::chrono::ceil<std::chrono::microseconds>(std::max(*delay, Duration::zero())).count();
  // GLib rounds down to its microsecond; the one more keeps the promise of "never before".
  g_source_set_ready_time(source_.get(), g_get_monotonic_time() + static_cast<gint64>(micros) + (micros > 0 ? 1 : 0));
}

}  // namespace quillmere
