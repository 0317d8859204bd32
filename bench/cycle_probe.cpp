// Counts the graph's cycles that nodes did not finish, as the daemon's profiler tells them.
// cycle_probe: for every line on its standard input prints one JSON object, {"NODE": [CYCLES, MISSED], ...}, of all
// nodes of that name together since the line before; ends with its input. A cycle is missed by a node that was told to
// run and was not done when the next one began.
#include <pipewire/impl.h>
#include <pipewire/pipewire.h>
// Releases from 1.4 on have calls in it, and not the headers that those need.
#include <pipewire/extensions/profiler.h>
#include <spa/param/profiler.h>
#include <spa/pod/parser.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>

namespace {

/// What the daemon keeps of a node between its cycles: told to run, or running.
constexpr int triggered = 1;
constexpr int awake = 2;

struct Count {
  std::uint64_t cycles = 0;
  std::uint64_t missed = 0;
};

struct Probe {
  pw_main_loop* loop = nullptr;
  pw_registry* registry = nullptr;
  pw_proxy* profiler = nullptr;
  spa_hook profilerListener{};
  std::map<std::string, Count> nodes;
};

void takeFollower(Probe& probe, const spa_pod& block) {
  std::int32_t id = 0;
  const char* name = nullptr;
  std::array<std::int64_t, 4> moments{};
  auto* const first = moments.data();
  std::int32_t status = 0;
  if (spa_pod_parse_struct(&block, SPA_POD_Int(&id), SPA_POD_String(&name), SPA_POD_Long(first),
                           SPA_POD_Long(first + 1), SPA_POD_Long(first + 2), SPA_POD_Long(first + 3),
                           SPA_POD_Int(&status)) < 0 ||
      name == nullptr) {
    return;
  }
  auto& count = probe.nodes[name];
  ++count.cycles;
  if (status == triggered || status == awake) ++count.missed;
}

void profile(void* data, const spa_pod* told) {
  auto& probe = *static_cast<Probe*>(data);
  spa_pod* each = nullptr;
  SPA_POD_FOREACH(static_cast<spa_pod*>(SPA_POD_BODY(told)), SPA_POD_BODY_SIZE(told), each) {
    if (!spa_pod_is_object_type(each, SPA_TYPE_OBJECT_Profiler)) continue;
    const auto* object = reinterpret_cast<const spa_pod_object*>(each);
    const spa_pod_prop* property = nullptr;
    SPA_POD_OBJECT_FOREACH(object, property) {
      if (property->key == SPA_PROFILER_followerBlock) takeFollower(probe, property->value);
    }
  }
}

void appeared(void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t, const spa_dict*) {
  auto& probe = *static_cast<Probe*>(data);
  if (probe.profiler != nullptr || std::strcmp(type, PW_TYPE_INTERFACE_Profiler) != 0) return;
  static const auto events = [] {
    pw_profiler_events made{};
    made.version = PW_VERSION_PROFILER_EVENTS;
    made.profile = profile;
    return made;
  }();
  probe.profiler = static_cast<pw_proxy*>(pw_registry_bind(probe.registry, id, type, PW_VERSION_PROFILER, 0));
  pw_proxy_add_object_listener(probe.profiler, &probe.profilerListener, &events, &probe);
}

void asked(void* data, int descriptor, std::uint32_t) {
  auto& probe = *static_cast<Probe*>(data);
  std::array<char, 256> line{};
  if (read(descriptor, line.data(), line.size()) <= 0) {
    pw_main_loop_quit(probe.loop);
    return;
  }
  std::printf("{");
  const char* separator = "";
  for (const auto& [name, count] : probe.nodes) {
    std::printf("%s\"%s\": [%llu, %llu]", separator, name.c_str(), static_cast<unsigned long long>(count.cycles),
                static_cast<unsigned long long>(count.missed));
    separator = ", ";
  }
  std::printf("}\n");
  std::fflush(stdout);
  probe.nodes.clear();
}

}  // namespace

int main(int argc, char** argv) {
  pw_init(&argc, &argv);
  Probe probe;
  probe.loop = pw_main_loop_new(nullptr);
  pw_loop* loop = pw_main_loop_get_loop(probe.loop);
  pw_context* context = pw_context_new(loop, nullptr, 0);
  // Without this the profiler's interface is not known to a client.
  pw_context_load_module(context, PW_EXTENSION_MODULE_PROFILER, nullptr, nullptr);
  pw_core* core = pw_context_connect(context, nullptr, 0);
  if (core == nullptr) {
    std::fprintf(stderr, "cycle_probe: there is no daemon\n");
    return 1;
  }
  probe.registry = pw_core_get_registry(core, PW_VERSION_REGISTRY, 0);
  pw_registry_events events{};
  events.version = PW_VERSION_REGISTRY_EVENTS;
  events.global = appeared;
  spa_hook listener{};
  pw_registry_add_listener(probe.registry, &listener, &events, &probe);
  pw_loop_add_io(loop, STDIN_FILENO, SPA_IO_IN | SPA_IO_HUP, false, asked, &probe);
  pw_main_loop_run(probe.loop);
  if (probe.profiler != nullptr) pw_proxy_destroy(probe.profiler);
  pw_proxy_destroy(reinterpret_cast<pw_proxy*>(probe.registry));
  pw_core_disconnect(core);
  pw_context_destroy(context);
  pw_main_loop_destroy(probe.loop);
  pw_deinit();
  return 0;
}
