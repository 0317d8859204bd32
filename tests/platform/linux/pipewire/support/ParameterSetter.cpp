#include "support/ParameterSetter.h"

#include <pipewire/pipewire.h>
#include <spa/param/props.h>
#include <spa/pod/builder.h>

#include <array>
#include <atomic>
#include <stdexcept>

#include "support/Session.h"

namespace quillmere::test {

struct ParameterSetter::Client {
  pw_thread_loop* loop = nullptr;
  pw_context* context = nullptr;
  pw_core* core = nullptr;
  spa_hook listener{};
  pw_registry* registry = nullptr;
  pw_proxy* node = nullptr;
  std::atomic<int> done{0};

  /// Called with the loop locked.
  bool waitForAnswer() {
    const int asked = pw_core_sync(core, PW_ID_CORE, 0);
    pw_thread_loop_unlock(loop);
    const bool came = eventually([&] { return done == asked; }, std::chrono::seconds(2));
    pw_thread_loop_lock(loop);
    return came;
  }
};

ParameterSetter::ParameterSetter(std::uint32_t node) : client_(std::make_unique<Client>()) {
  pw_init(nullptr, nullptr);
  static const auto events = [] {
    pw_core_events made{};
    made.version = PW_VERSION_CORE_EVENTS;
    made.done = [](void* data, std::uint32_t, int sequence) { static_cast<Client*>(data)->done = sequence; };
    return made;
  }();
  client_->loop = pw_thread_loop_new("parameters", nullptr);
  pw_thread_loop_start(client_->loop);
  pw_thread_loop_lock(client_->loop);
  client_->context = pw_context_new(pw_thread_loop_get_loop(client_->loop), nullptr, 0);
  client_->core = pw_context_connect(client_->context, nullptr, 0);
  if (client_->core == nullptr) throw std::runtime_error("no daemon to connect to");
  pw_core_add_listener(client_->core, &client_->listener, &events, client_.get());
  client_->registry = pw_core_get_registry(client_->core, PW_VERSION_REGISTRY, 0);
  client_->node =
      static_cast<pw_proxy*>(pw_registry_bind(client_->registry, node, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0));
  const bool isIn = client_->waitForAnswer();
  pw_thread_loop_unlock(client_->loop);
  if (!isIn) throw std::runtime_error("the daemon doesn't let another client in");
}

ParameterSetter::~ParameterSetter() {
  pw_thread_loop_stop(client_->loop);
  pw_proxy_destroy(client_->node);
  pw_proxy_destroy(reinterpret_cast<pw_proxy*>(client_->registry));
  pw_context_destroy(client_->context);
  pw_thread_loop_destroy(client_->loop);
}

bool ParameterSetter::isAnswered() {
  std::array<std::uint8_t, 256> buffer{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, buffer.data(), buffer.size());
  const auto* parameter = static_cast<const spa_pod*>(
      spa_pod_builder_add_object(&builder, SPA_TYPE_OBJECT_Props, SPA_PARAM_Props, SPA_PROP_mute, SPA_POD_Bool(false)));
  pw_thread_loop_lock(client_->loop);
  pw_node_set_param(reinterpret_cast<pw_node*>(client_->node), SPA_PARAM_Props, 0, parameter);
  const bool came = client_->waitForAnswer();
  pw_thread_loop_unlock(client_->loop);
  return came;
}

}  // namespace quillmere::test
