// One question at a time.
#include "platform/linux/LinuxApplicationChooser.h"

#include <optional>
#include <string_view>
#include <utility>

#include "portal/Portal.h"
#include "runtime/Threads.h"

namespace quillmere {

namespace {

constexpr const char* applicationsFolder = "/usr/share/applications";

GVariant* argumentsFor(const char* token, const ApplicationQuestion& question) {
  GVariantBuilder patterns;
  g_variant_builder_init(&patterns, G_VARIANT_TYPE("a(us)"));
  constexpr guint32 isPattern = 0;
  constexpr guint32 isType = 1;
  g_variant_builder_add(&patterns, "(us)", isPattern, "*.desktop");
  g_variant_builder_add(&patterns, "(us)", isType, "application/x-desktop");
  GVariantBuilder filters;
  g_variant_builder_init(&filters, G_VARIANT_TYPE("a(sa(us))"));
  g_variant_builder_add(&filters, "(sa(us))", question.filterName.c_str(), &patterns);
  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE("a{sv}"));
  g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(token));
  g_variant_builder_add(&options, "{sv}", "multiple", g_variant_new_boolean(FALSE));
  g_variant_builder_add(&options, "{sv}", "directory", g_variant_new_boolean(FALSE));
  g_variant_builder_add(&options, "{sv}", "filters", g_variant_builder_end(&filters));
  g_variant_builder_add(&options, "{sv}", "current_folder", g_variant_new_bytestring(applicationsFolder));
  return g_variant_new("(ssa{sv})", "", question.title.c_str(), &options);
}

std::optional<std::string> pathIn(GVariant* results) {
  const bus::Variant uris(results == nullptr ? nullptr
                                             : g_variant_lookup_value(results, "uris", G_VARIANT_TYPE_STRING_ARRAY));
  if (!uris || g_variant_n_children(uris.get()) == 0) return std::nullopt;
  const char* uri = nullptr;
  g_variant_get_child(uris.get(), 0, "&s", &uri);
  char* host = nullptr;
  char* name = g_filename_from_uri(uri, &host, nullptr);
  std::optional<std::string> path;
  // A file of another machine has a path that means nothing here.
  if (name != nullptr && (host == nullptr || std::string_view(host) == "localhost")) path = name;
  g_free(host);
  g_free(name);
  return path;
}

}  // namespace

/// [main]
struct LinuxApplicationChooser::State {
  std::unique_ptr<ApplicationChooser> otherwise;
  /// Whose the open dialogue is; empty while there is none.
  Reply waiting;

  void answer(std::optional<std::string> path) {
    if (const auto reply = std::exchange(waiting, {})) reply(std::move(path));
  }
};

LinuxApplicationChooser::LinuxApplicationChooser(std::shared_ptr<portal::Portal> portal, const Runtime& runtime,
                                                 std::unique_ptr<ApplicationChooser> otherwise)
    : portal_(std::move(portal)), runtime_(runtime), state_(std::make_shared<State>(std::move(otherwise))) {}

LinuxApplicationChooser::~LinuxApplicationChooser() = default;

void LinuxApplicationChooser::choose(const ApplicationQuestion& question, Reply reply) {
  QUILLMERE_CHECK_ON(runtime_.main, "an application is chosen off the main thread");
  const std::weak_ptr<State> weak = state_;
  if (const auto earlier = std::exchange(state_->waiting, std::move(reply))) {
    runtime_.main.post([weak, earlier] {
      if (!weak.expired()) earlier(std::nullopt);
    });
    return;
  }
  portal_->request(
      "org.freedesktop.portal.FileChooser", "OpenFile",
      [question](const char* token) { return argumentsFor(token, question); },
      [&main = runtime_.main, weak, question](portal::Response response, GVariant* results) {
        const auto path = pathIn(results);
        const bool isAbsent = response == portal::Response::absent;
        main.post([weak, question, path, isAbsent] {
          const auto state = weak.lock();
          if (!state) return;
          if (!isAbsent || !state->otherwise) {
            state->answer(path);
            return;
          }
          state->otherwise->choose(question, [weak](std::optional<std::string> chosen) {
            if (const auto asked = weak.lock()) asked->answer(std::move(chosen));
          });
        });
      });
}

}  // namespace quillmere
