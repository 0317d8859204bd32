// One question at a time.
#include "platform/linux/LinuxApplicationChooser.h"

#include <optional>
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
  char* name = g_filename_from_uri(uri, nullptr, nullptr);
  if (name == nullptr) return std::nullopt;
  std::string path = name;
  g_free(name);
  return path;
}

}  // namespace

/// [main]
struct LinuxApplicationChooser::State {
  std::unique_ptr<ApplicationChooser> otherwise;
  bool isOpen = false;

  void ask(const ApplicationQuestion& question, const Reply& reply) {
    if (otherwise) {
      otherwise->choose(question, reply);
    } else {
      reply(std::nullopt);
    }
  }
};

LinuxApplicationChooser::LinuxApplicationChooser(std::shared_ptr<portal::Portal> portal, const Runtime& runtime,
                                                 std::unique_ptr<ApplicationChooser> otherwise)
    : portal_(std::move(portal)), runtime_(runtime), state_(std::make_shared<State>(std::move(otherwise))) {}

LinuxApplicationChooser::~LinuxApplicationChooser() = default;

void LinuxApplicationChooser::choose(const ApplicationQuestion& question, Reply reply) {
  QUILLMERE_CHECK_ON(runtime_.main, "an application is chosen off the main thread");
  const auto answer = [weak = std::weak_ptr<State>(state_), reply = std::move(reply)](std::optional<std::string> path) {
    const auto state = weak.lock();
    if (!state) return;
    state->isOpen = false;
    reply(std::move(path));
  };
  if (state_->isOpen) {
    runtime_.main.post([weak = std::weak_ptr<State>(state_), answer] {
      // The open dialogue stays the one that is waited for.
      if (const auto state = weak.lock()) {
        answer(std::nullopt);
        state->isOpen = true;
      }
    });
    return;
  }
  state_->isOpen = true;
  portal_->request(
      "org.freedesktop.portal.FileChooser", "OpenFile",
      [question](const char* token) { return argumentsFor(token, question); },
      [&main = runtime_.main, weak = std::weak_ptr<State>(state_), question, answer](portal::Response response,
                                                                                     GVariant* results) {
        const auto path = pathIn(results);
        const bool isAbsent = response == portal::Response::absent;
        main.post([weak, question, answer, path, isAbsent] {
          const auto state = weak.lock();
          if (!state) return;
          if (isAbsent) {
            state->ask(question, answer);
          } else {
            answer(path);
          }
        });
      });
}

}  // namespace quillmere
