#include "support/MetadataKeeper.h"

#include <pipewire/extensions/metadata.h>
#include <pipewire/impl.h>
#include <pipewire/pipewire.h>

#include <stdexcept>

namespace quillmere::test {

struct MetadataKeeper::Client {
  pw_thread_loop* loop = nullptr;
  pw_context* context = nullptr;
  pw_impl_metadata* metadata = nullptr;
};

MetadataKeeper::MetadataKeeper(const std::string& name, const std::string& sink) : client_(std::make_unique<Client>()) {
  pw_init(nullptr, nullptr);
  client_->loop = pw_thread_loop_new("metadata", nullptr);
  pw_thread_loop_start(client_->loop);
  pw_thread_loop_lock(client_->loop);
  client_->context = pw_context_new(pw_thread_loop_get_loop(client_->loop), nullptr, 0);
  auto* core = pw_context_connect(client_->context, pw_properties_new(PW_KEY_APP_NAME, name.c_str(), nullptr), 0);
  if (core != nullptr) {
    client_->metadata = pw_context_create_metadata(client_->context, "default", nullptr, 0);
    pw_core_export(core, PW_TYPE_INTERFACE_Metadata, &pw_impl_metadata_get_properties(client_->metadata)->dict,
                   pw_impl_metadata_get_implementation(client_->metadata), 0);
    pw_impl_metadata_set_property(client_->metadata, 0, "default.audio.sink", "Spa:String:JSON",
                                  (R"({ "name": ")" + sink + R"(" })").c_str());
  }
  pw_thread_loop_unlock(client_->loop);
  if (core == nullptr) throw std::runtime_error("no daemon to connect to");
}

MetadataKeeper::~MetadataKeeper() {
  pw_thread_loop_stop(client_->loop);
  pw_impl_metadata_destroy(client_->metadata);
  pw_context_destroy(client_->context);
  pw_thread_loop_destroy(client_->loop);
}

}  // namespace quillmere::test
