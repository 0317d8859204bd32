// A name, an object, and coming back to both.
#include "instance/BusPlace.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

namespace quillmere::instance {

namespace {

constexpr const char* busName = "app.quillmere.host";
constexpr const char* objectPath = "/app/quillmere/host";
constexpr const char* applicationInterface = "org.freedesktop.Application";
/// The action that shows a section of the main window; its one argument is the section's name.
constexpr const char* showSection = "show-section";
/// The one of the desktop entry, whose actions have no arguments, and where it leads.
constexpr std::string_view showSettings = "show-settings";
constexpr const char* settings = "Settings";
constexpr const char* tokenKey = "activation-token";
/// What came before tokens.
constexpr const char* startupKey = "desktop-startup-id";

constexpr auto longestWait = std::chrono::milliseconds(2000);
constexpr auto answerTimeout = std::chrono::milliseconds(1500);
/// A bus that went is looked for soon, then less and less often.
constexpr Duration firstPause = std::chrono::milliseconds(500);
constexpr Duration longestPause = std::chrono::seconds(30);

constexpr const char* introspection = R"(<node>
  <interface name="org.freedesktop.Application">
    <method name="Activate"><arg type="a{sv}" direction="in"/></method>
    <method name="Open"><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/></method>
    <method name="ActivateAction">
      <arg type="s" direction="in"/><arg type="av" direction="in"/><arg type="a{sv}" direction="in"/>
    </method>
  </interface>
</node>)";

GVariant* platformData(const ActivationRequest& request) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{sv}"));
  if (!request.activationToken.empty()) {
    for (const auto* key : {tokenKey, startupKey}) {
      g_variant_builder_add(&builder, "{sv}", key, g_variant_new_string(request.activationToken.c_str()));
    }
  }
  return g_variant_builder_end(&builder);
}

std::string tokenIn(GVariant* data) {
  for (const auto* key : {tokenKey, startupKey}) {
    const char* token = nullptr;
    if (g_variant_lookup(data, key, "&s", &token) != FALSE) return token;
  }
  return {};
}

/// Opening files and unknown actions are other ways to come to the front.
ActivationRequest requestOf(std::string_view method, GVariant* parameters) {
  ActivationRequest request;
  const auto count = g_variant_n_children(parameters);
  if (count == 0) return request;
  const bus::Variant data(g_variant_get_child_value(parameters, count - 1));
  if (bus::isOfType(data.get(), "a{sv}")) request.activationToken = tokenIn(data.get());
  if (method != "ActivateAction") return request;
  const char* action = nullptr;
  g_variant_get_child(parameters, 0, "&s", &action);
  if (action == showSettings) request.section = settings;
  const bus::Variant arguments(g_variant_get_child_value(parameters, 1));
  if (std::string_view(action) != showSection || g_variant_n_children(arguments.get()) != 1) return request;
  const bus::Variant boxed(g_variant_get_child_value(arguments.get(), 0));
  const bus::Variant section(g_variant_get_variant(boxed.get()));
  if (bus::isOfType(section.get(), "s")) request.section = g_variant_get_string(section.get(), nullptr);
  return request;
}

}  // namespace

BusPlace::BusPlace(std::optional<std::string> address, LogSink& log,
                   std::function<void(const ActivationRequest&)> activated)
    : log_(log, "SingleInstance"),
      activated_(std::move(activated)),
      pause_(firstPause),
      bus_(std::move(address), {[this] { connected(); }, [this](const auto&) { disconnected(); }}) {}

BusPlace::~BusPlace() { bus_.end(); }

Outcome BusPlace::take(const std::optional<ActivationRequest>& request) {
  auto outcome = outcome_.get_future();
  bus_.invoke([this, request] {
    request_ = request;
    bus_.connect();
  });
  // A bus that hangs says nothing of other instances.
  return outcome.wait_for(longestWait) == std::future_status::ready ? outcome.get() : Outcome::unavailable;
}

void BusPlace::connected() {
  pause_ = firstPause;
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(introspection, nullptr);
  static const GDBusInterfaceVTable table{methodCalled, nullptr, nullptr, {}};
  const bool isServed = bus_.serve(objectPath, node->interfaces[0], table, this);
  g_dbus_node_info_unref(node);
  if (!isServed) {
    settle(Outcome::unavailable);
  } else {
    requestName(0);
  }
}

void BusPlace::disconnected() {
  settle(Outcome::unavailable);
  if (isOver_) return;
  bus_.after(pause_, [this] { bus_.connect(); });
  pause_ = std::min(2 * pause_, longestPause);
}

void BusPlace::requestName(int round) {
  constexpr guint32 doNotQueue = 4;
  bus_.call(bus::busService, bus::busPath, bus::busInterface, "RequestName", g_variant_new("(su)", busName, doNotQueue),
            answerTimeout, [this, round](GVariant* reply) {
              constexpr guint32 isOwner = 1;
              constexpr guint32 exists = 3;
              constexpr guint32 isAlreadyOwner = 4;
              guint32 answer = 0;
              if (bus::isOfType(reply, "(u)")) g_variant_get(reply, "(u)", &answer);
              if (answer == isOwner || answer == isAlreadyOwner) {
                settle(Outcome::first);
              } else if (answer != exists) {
                settle(Outcome::unavailable);
              } else if (isSettled_) {
                // It came while the bus was away; neither can be told to end for the other.
                log_.error("another instance has taken the place on the session bus");
                isOver_ = true;
              } else {
                askOther(round);
              }
            });
}

void BusPlace::askOther(int round) {
  if (!request_) {
    settle(Outcome::second);
    return;
  }
  const bool isPlain = !request_->section;
  auto* arguments =
      isPlain ? g_variant_new("(@a{sv})", platformData(*request_))
              : g_variant_new("(s@av@a{sv})", showSection, g_variant_new_parsed("[<%s>]", request_->section->c_str()),
                              platformData(*request_));
  bus_.call(busName, objectPath, applicationInterface, isPlain ? "Activate" : "ActivateAction", arguments,
            answerTimeout, [this, round](GVariant* reply) {
              // The holder may have gone between our two questions; the second round then finds the place free.
              if (reply == nullptr && round == 0) {
                requestName(1);
              } else {
                settle(Outcome::second);
              }
            });
}

void BusPlace::settle(Outcome outcome) {
  if (std::exchange(isSettled_, true)) return;
  isOver_ = outcome == Outcome::second;
  outcome_.set_value(outcome);
}

void BusPlace::methodCalled(GDBusConnection* /*connection*/, const char* /*sender*/, const char* /*path*/,
                            const char* /*interface*/, const char* method, GVariant* parameters,
                            GDBusMethodInvocation* invocation, gpointer self) {
  static_cast<BusPlace*>(self)->activated_(requestOf(method, parameters));
  g_dbus_method_invocation_return_value(invocation, nullptr);
}

}  // namespace quillmere::instance
