// Watcher, item and menu on the bus.
#include "statusitem/ItemOnBus.h"

#include <unistd.h>

#include <memory>
#include <utility>

#include "statusitem/HostCalls.h"
#include "statusitem/Interfaces.h"

namespace quillmere::statusitem {
namespace {

using bus::isOfType;
using bus::owned;
using bus::Variant;

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";
constexpr const char* watcherInterface = watcherName;

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* colorScheme = "color-scheme";

constexpr const char* programName = "quillmere";

/// Whether nobody has answered a call, in time or at all.
bool isSilence(const GError* error) {
  return g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) != FALSE ||
         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) != FALSE;
}

GVariant* emptyPixmaps() { return g_variant_new_array(G_VARIANT_TYPE("(iiay)"), nullptr, 0); }

/// The bus takes no text that is not UTF-8.
GVariant* validString(const std::string& source) {
  return g_variant_new_take_string(g_utf8_make_valid(source.data(), static_cast<gssize>(source.size())));
}

void refuse(GDBusMethodInvocation* invocation) {
  g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS,
                                                "there is no such entry or property");
}

}  // namespace

ItemOnBus::ItemOnBus(ItemEvents events, LogSink& log, LinuxStatusItemOptions options)
    : events_(std::move(events)),
      log_(log, "StatusItem"),
      options_(std::move(options)),
      bus_(options_.busAddress, {[this] { connected(); }, [this](const auto& reason) { disconnected(reason); }}) {
  bus_.invoke([this] {
    bus_.after(options_.firstAnswer, [this] {
      if (!toldAvailability_) tellAvailability();
    });
    bus_.connect();
  });
}

ItemOnBus::~ItemOnBus() {
  bus_.end([this] {
    isOver_ = true;
    // The host still waits for these.
    for (const auto& [number, question] : std::exchange(questions_, {})) question.answer(false);
  });
}

void ItemOnBus::show() {
  bus_.invoke([this] {
    isShown_ = true;
    publish();
  });
}

void ItemOnBus::setMenu(std::vector<StatusMenuItem> menu) {
  bus_.invoke([this, menu = std::move(menu)] { emitMenuChange(menu_.replace(menu)); });
}

void ItemOnBus::setToolTip(std::string text) {
  bus_.invoke([this, text = std::move(text)] {
    toolTip_ = text;
    emit(itemPath, itemInterface, "NewToolTip", nullptr);
  });
}

void ItemOnBus::answer(int question) {
  bus_.invoke([this, question] {
    auto found = questions_.extract(question);
    if (!found.empty()) found.mapped().answer(menu_.revision() != found.mapped().revision);
  });
}

// --- the connection

void ItemOnBus::connected() {
  missingIsReported_ = false;
  const auto ask = [this](const std::string& sender, GVariant*) {
    if (sender == watcher_) askForHost();
  };
  bus_.subscribe(watcherInterface, "StatusNotifierHostRegistered", watcherPath, nullptr, ask);
  bus_.subscribe(watcherInterface, "StatusNotifierHostUnregistered", watcherPath, nullptr, ask);
  bus_.subscribe(bus::propertiesInterface, "PropertiesChanged", watcherPath, watcherInterface, ask);
  bus_.subscribe(settingsInterface, "SettingChanged", portalPath, appearance,
                 [this](const std::string& sender, GVariant* parameters) {
                   if (sender != portal_ || !isOfType(parameters, "(ssv)")) return;
                   const char* key = nullptr;
                   g_variant_get_child(parameters, 1, "&s", &key);
                   const Variant value(g_variant_get_child_value(parameters, 2));
                   if (std::string_view(key) == colorScheme) setPreference(prefersDark(value.get()));
                 });
  bus_.watchName(portalName, [this](const std::string& owner) { setPortal(owner); });
  bus_.watchName(watcherName, [this](const std::string& owner) { setWatcher(owner); });
  publish();
}

void ItemOnBus::disconnected(const std::string& reason) {
  if (!missingIsReported_) log_.standard("no panel can be reached: " + reason);
  missingIsReported_ = true;
  isPublished_ = false;
  service_.clear();
  watcher_.clear();
  portal_.clear();
  hasHost_ = false;
  isEnrolled_ = false;
  tellAvailability();
  bus_.after(options_.retryPeriod, [this] { bus_.connect(); });
}

void ItemOnBus::tellAvailability() {
  const bool isAvailable = !watcher_.empty() && hasHost_;
  if (toldAvailability_ == isAvailable) return;
  toldAvailability_ = isAvailable;
  events_.availabilityChanged(isAvailable);
}

// --- the item's place in the panel

void ItemOnBus::publish() {
  if (!isShown_ || isPublished_ || bus_.connection() == nullptr) return;
  static const GDBusInterfaceVTable table{
      [](GDBusConnection*, const char*, const char*, const char* interface, const char* method, GVariant* arguments,
         GDBusMethodInvocation* invocation, gpointer data) {
        auto* self = static_cast<ItemOnBus*>(data);
        if (std::string_view(interface) == itemInterface) {
          self->itemCalled(method, arguments, invocation);
        } else {
          self->menuCalled(method, arguments, invocation);
        }
      },
      [](GDBusConnection*, const char*, const char*, const char* interface, const char* name, GError**, gpointer data) {
        const auto* self = static_cast<const ItemOnBus*>(data);
        return std::string_view(interface) == itemInterface ? self->itemProperty(name) : self->menuProperty(name);
      },
      nullptr,
      {}};
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(introspection, nullptr);
  for (const auto& [path, interface] : {std::pair(itemPath, itemInterface), std::pair(menuPath, menuInterface)}) {
    bus_.serve(path, g_dbus_node_info_lookup_interface(node, interface), table, this);
  }
  g_dbus_node_info_unref(node);
  isPublished_ = true;
  takeName();
}

void ItemOnBus::takeName() {
  // Within a sandbox the name may be refused, or be taken by a program with the same number in another one. Watchers
  // take the connection's own name as well.
  constexpr guint32 doNotQueue = 4;
  const auto wanted = "org.kde.StatusNotifierItem-" + std::to_string(::getpid()) + "-1";
  bus_.call(bus::busService, bus::busPath, bus::busInterface, "RequestName",
            g_variant_new("(su)", wanted.c_str(), doNotQueue), options_.longestAnswer, [this, wanted](GVariant* reply) {
              constexpr guint32 isOwner = 1;
              guint32 answer = 0;
              if (isOfType(reply, "(u)")) g_variant_get(reply, "(u)", &answer);
              service_ = answer == isOwner ? wanted : g_dbus_connection_get_unique_name(bus_.connection());
              enrol();
            });
}

void ItemOnBus::setWatcher(const std::string& owner) {
  if (owner == watcher_ && toldAvailability_) return;
  watcher_ = owner;
  hasHost_ = false;
  isEnrolled_ = false;
  if (owner.empty()) {
    tellAvailability();
    return;
  }
  // A watcher that follows another one at once is no news until it has said whether anybody shows its items.
  askForHost();
  enrol();
}

void ItemOnBus::askForHost() {
  bus_.call(watcher_, watcherPath, bus::propertiesInterface, "Get",
            g_variant_new("(ss)", watcherInterface, "IsStatusNotifierHostRegistered"), options_.longestAnswer,
            [this, asked = watcher_](GVariant* reply) {
              if (asked != watcher_) return;
              hasHost_ = false;
              if (isOfType(reply, "(v)")) {
                const Variant boxed(g_variant_get_child_value(reply, 0));
                const Variant value(g_variant_get_variant(boxed.get()));
                hasHost_ = isOfType(value.get(), "b") && g_variant_get_boolean(value.get()) != FALSE;
              }
              tellAvailability();
              // A watcher that has refused once may have been short of a host.
              if (hasHost_) enrol();
            });
}

void ItemOnBus::enrol() {
  if (isEnrolled_ || watcher_.empty() || service_.empty()) return;
  isEnrolled_ = true;
  bus_.ask(watcher_, watcherPath, watcherInterface, "RegisterStatusNotifierItem",
           g_variant_new("(s)", service_.c_str()), options_.longestAnswer, G_DBUS_CALL_FLAGS_NO_AUTO_START,
           [this, asked = watcher_](GVariant* reply, const GError* error) {
             if (reply != nullptr || asked != watcher_) return;
             // The bus keeps the wish for a desktop that is busy starting, and that takes it up in the end.
             if (isSilence(error)) {
               log_.standard("the desktop's watcher of status items is slow to answer");
               return;
             }
             isEnrolled_ = false;
             log_.error(std::string("the desktop's watcher of status items has refused ours: ") + error->message);
           });
}

// --- light and dark

void ItemOnBus::setPortal(const std::string& owner) {
  if (owner == portal_) return;
  portal_ = owner;
  // What it has said holds until it says something else.
  if (owner.empty()) return;
  bus_.call(owner, portalPath, settingsInterface, "Read", g_variant_new("(ss)", appearance, colorScheme),
            options_.longestAnswer, [this, asked = owner](GVariant* reply) {
              if (asked != portal_ || !isOfType(reply, "(v)")) return;
              const Variant value(g_variant_get_child_value(reply, 0));
              setPreference(prefersDark(value.get()));
            });
}

void ItemOnBus::setPreference(std::optional<bool> preference) {
  const auto before = ink();
  preference_ = preference;
  if (ink() != before) emit(itemPath, itemInterface, "NewIcon", nullptr);
  emitMenuChange(menu_.setInk(menuInk(preference)));
}

// --- what hosts read

GVariant* ItemOnBus::itemProperty(const std::string& name) const {
  if (name == "Category") return g_variant_new_string("ApplicationStatus");
  if (name == "Id" || name == "Title") return g_variant_new_string(programName);
  if (name == "Status") return g_variant_new_string("Active");
  if (name == "WindowId") return g_variant_new_int32(0);
  if (name == "IconPixmap") return g_variant_ref(iconPixmaps(ink()).get());
  if (name == "OverlayIconPixmap" || name == "AttentionIconPixmap") return emptyPixmaps();
  if (name == "ToolTip") return g_variant_new("(s@a(iiay)@ss)", "", emptyPixmaps(), validString(toolTip_), "");
  if (name == "ItemIsMenu") return g_variant_new_boolean(FALSE);
  if (name == "Menu") return g_variant_new_object_path(menuPath);
  return g_variant_new_string("");
}

GVariant* ItemOnBus::menuProperty(const std::string& name) const {
  if (name == "Version") return g_variant_new_uint32(3);
  if (name == "TextDirection") return g_variant_new_string("ltr");
  if (name == "Status") return g_variant_new_string("normal");
  return g_variant_new_strv(nullptr, 0);
}

// --- what hosts call

void ItemOnBus::itemCalled(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation) {
  const auto call = readItemCall(method, arguments);
  if (call.activation) events_.activated({call.activation->point, takeToken()});
  if (call.angleDelta) events_.scrolled(*call.angleDelta);
  if (call.activationToken) activationToken_ = *call.activationToken;
  g_dbus_method_invocation_return_value(invocation, nullptr);
}

std::string ItemOnBus::takeToken() { return std::exchange(activationToken_, {}); }

void ItemOnBus::menuCalled(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation) {
  const auto call = std::make_shared<const MenuCall>(readMenuCall(menu_, method, arguments));
  for (const auto& event : call->events) menuEvent(event.id, event.name);
  switch (call->kind) {
    case MenuCall::Kind::answered:
      g_dbus_method_invocation_return_value(invocation, call->reply.get());
      break;
    case MenuCall::Kind::refused:
      refuse(invocation);
      break;
    case MenuCall::Kind::question:
      ask([invocation, call](bool needsUpdate) {
        g_dbus_method_invocation_return_value(invocation, answerTo(*call, needsUpdate).get());
      });
      break;
  }
}

void ItemOnBus::menuEvent(int id, const std::string& event) {
  if (event == "clicked" && menu_.canBeChosen(id)) events_.chosen(id, takeToken());
  // Some hosts tell this and ask nothing beforehand.
  if (event == "opened") ask([](bool) {});
}

void ItemOnBus::ask(Answer answer) {
  if (isOver_) {
    answer(false);
    return;
  }
  const int number = ++lastQuestion_;
  questions_.emplace(number, Question{menu_.revision(), std::move(answer)});
  events_.aboutToShow(number);
  // A host may hang as long as nobody answers; of later changes it learns by signals.
  bus_.after(options_.longestQuestion, [this, number] {
    auto found = questions_.extract(number);
    if (!found.empty()) found.mapped().answer(false);
  });
}

// --- what hosts are told

void ItemOnBus::emit(const char* path, const char* interface, const char* signal, GVariant* body) {
  if (isPublished_) {
    g_dbus_connection_emit_signal(bus_.connection(), nullptr, path, interface, signal, body, nullptr);
  } else if (body != nullptr) {
    owned(body);
  }
}

void ItemOnBus::emitMenuChange(const MenuChange& change) {
  for (const auto parent : change.parents) {
    emit(menuPath, menuInterface, "LayoutUpdated", g_variant_new("(ui)", menu_.revision(), parent));
  }
  if (!change.properties.empty()) {
    emit(menuPath, menuInterface, "ItemsPropertiesUpdated", change.propertiesUpdated().get());
  }
}

}  // namespace quillmere::statusitem
