// Asking the portal, and believing what it says it has done.
#include "platform/linux/PortalLoginItem.h"

#include <future>
#include <utility>

#include "portal/Portal.h"

namespace quillmere {

namespace {

struct Outcome {
  portal::Response response = portal::Response::absent;
  bool starts = false;
};

GVariant* argumentsFor(const char* token, bool starts) {
  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE("a{sv}"));
  g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(token));
  g_variant_builder_add(&options, "{sv}", "autostart", g_variant_new_boolean(starts ? TRUE : FALSE));
  constexpr const char* const command[] = {"quillmere", "--background", nullptr};
  g_variant_builder_add(&options, "{sv}", "commandline", g_variant_new_strv(command, -1));
  return g_variant_new("(sa{sv})", "", &options);
}

}  // namespace

PortalLoginItem::PortalLoginItem(std::shared_ptr<portal::Portal> portal, std::unique_ptr<LoginItem> outside,
                                 std::chrono::milliseconds patience)
    : portal_(std::move(portal)), outside_(std::move(outside)), patience_(patience) {}

PortalLoginItem::~PortalLoginItem() = default;

LoginItem::Failure PortalLoginItem::ask(bool starts) {
  const auto answer = std::make_shared<std::promise<Outcome>>();
  auto outcome = answer->get_future();
  portal_->request(
      "org.freedesktop.portal.Background", "RequestBackground",
      [starts](const char* token) { return argumentsFor(token, starts); },
      [answer](portal::Response response, GVariant* results) {
        Outcome given{response, false};
        if (results != nullptr) {
          gboolean value = FALSE;
          given.starts = g_variant_lookup(results, "autostart", "b", &value) != FALSE && value != FALSE;
        }
        answer->set_value(given);
      });
  if (outcome.wait_for(patience_) != std::future_status::ready) return "the portal does not answer";
  const auto given = outcome.get();
  switch (given.response) {
    case portal::Response::given:
      told_ = given.starts;
      if (given.starts == starts) return std::nullopt;
      return "the portal does otherwise";
    case portal::Response::cancelled:
      return "the user does not permit it";
    case portal::Response::ended:
      return "the portal has refused it";
    case portal::Response::absent:
      break;
  }
  return "there is no portal for it";
}

LoginItemStatus PortalLoginItem::status() {
  if (outside_ && outside_->status() == LoginItemStatus::enabled) return LoginItemStatus::enabled;
  return told_.value_or(false) ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
}

}  // namespace quillmere
