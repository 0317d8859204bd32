// The session's and the bus's word on what there is.
#include "platform/linux/LinuxPermissions.h"

#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "applications/DesktopEntries.h"
#include "bus/BusConnection.h"
#include "portal/Portal.h"

namespace quillmere {

namespace {

constexpr auto answerTimeout = std::chrono::seconds(5);

bool sessionIsX11() {
  const auto has = [](const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0';
  };
  return has("DISPLAY") && !has("WAYLAND_DISPLAY");
}

struct SettingsPlace {
  std::string_view desktop;
  std::vector<std::string> shortcuts;
  std::vector<std::string> notifications;
};

const std::vector<SettingsPlace>& settingsPlaces() {
  static const std::vector<SettingsPlace> places{
      {"GNOME", {"gnome-control-center", "keyboard"}, {"gnome-control-center", "notifications"}},
      {"Unity", {"gnome-control-center", "keyboard"}, {"gnome-control-center", "notifications"}},
      {"KDE", {"systemsettings", "kcm_keys"}, {"systemsettings", "kcm_notifications"}},
      {"XFCE", {"xfce4-keyboard-settings"}, {"xfce4-notifyd-config"}},
      {"LXQt", {"lxqt-config-globalkeyshortcuts"}, {"lxqt-config-notificationd"}},
      {"X-Cinnamon", {"cinnamon-settings", "keyboard"}, {"cinnamon-settings", "notifications"}},
      {"MATE", {"mate-keybinding-properties"}, {"mate-notification-properties"}},
      {"Budgie", {"budgie-control-center", "keyboard"}, {"budgie-control-center", "notifications"}},
  };
  return places;
}

struct Answers {
  bool givesShortcuts = false;
  FocusAuthorization focus = FocusAuthorization::notDetermined;

  friend bool operator==(const Answers&, const Answers&) = default;
};

/// A property, or a method without consequences, whose answer shows that the desktop tells of it.
struct Source {
  const char* service;
  const char* path;
  const char* interface;
  const char* method;
  const char* first;
  const char* second;
};

constexpr const char* properties = bus::propertiesInterface;
constexpr Source shortcuts{
    portal::service, portal::objectPath, properties, "Get", "org.freedesktop.portal.GlobalShortcuts", "version"};
constexpr std::array<Source, 2> focusSources{{
    {"org.freedesktop.Notifications", "/org/freedesktop/Notifications", properties, "Get",
     "org.freedesktop.Notifications", "Inhibited"},
    {"org.xfce.Xfconf", "/org/xfce/Xfconf", "org.xfce.Xfconf", "GetProperty", "xfce4-notifyd", "/do-not-disturb"},
}};

/// GNOME keeps it in its settings, which any program may read.
bool hasNotificationSettings() {
  GSettingsSchemaSource* source = g_settings_schema_source_get_default();
  GSettingsSchema* schema =
      source == nullptr ? nullptr : g_settings_schema_source_lookup(source, "org.gnome.desktop.notifications", TRUE);
  if (schema == nullptr) return false;
  const bool hasKey = g_settings_schema_has_key(schema, "show-banners") != FALSE;
  g_settings_schema_unref(schema);
  return hasKey;
}

/// One look: three questions, side by side.
class Look : public std::enable_shared_from_this<Look> {
 public:
  Look(bool readsSettings, std::function<void(Answers)> done) : readsSettings_(readsSettings), done_(std::move(done)) {}
  ~Look() { done_(answers_); }

  void start(bus::BusConnection* bus) {
    if (readsSettings_ && hasNotificationSettings()) answers_.focus = FocusAuthorization::authorized;
    if (bus == nullptr) return;
    // The portal comes with the desktop or with the first who needs it; nothing else is started to be asked.
    ask(*bus, shortcuts, G_DBUS_CALL_FLAGS_NONE,
        [](Look& look, GVariant* reply, const GError*) { look.answers_.givesShortcuts = reply != nullptr; });
    for (const auto& source : focusSources) {
      ask(*bus, source, G_DBUS_CALL_FLAGS_NO_AUTO_START, [](Look& look, GVariant* reply, const GError* error) {
        auto& focus = look.answers_.focus;
        if (reply != nullptr) {
          focus = FocusAuthorization::authorized;
        } else if (focus == FocusAuthorization::notDetermined &&
                   g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED) != FALSE) {
          focus = FocusAuthorization::denied;
        }
      });
    }
  }

 private:
  using Taker = void (*)(Look&, GVariant*, const GError*);

  void ask(bus::BusConnection& bus, const Source& source, GDBusCallFlags flags, Taker take) {
    bus.ask(source.service, source.path, source.interface, source.method,
            g_variant_new("(ss)", source.first, source.second), answerTimeout, flags,
            [self = shared_from_this(), take](GVariant* reply, const GError* error) { take(*self, reply, error); });
  }

  bool readsSettings_;
  std::function<void(Answers)> done_;
  Answers answers_;
};

}  // namespace

/// [main]
struct LinuxPermissions::State {
  Answers answers;
  bool isLooking = false;
  std::function<void()> changed;
};

std::vector<std::string> settingsCommand(const std::string& anchor, const std::vector<std::string>& desktops) {
  for (const auto& desktop : desktops) {
    for (const auto& place : settingsPlaces()) {
      if (place.desktop != desktop) continue;
      if (anchor == "Privacy_Accessibility") return place.shortcuts;
      if (anchor == "Privacy_FocusStatus") return place.notifications;
    }
  }
  return {};
}

LinuxPermissions::LinuxPermissions(std::shared_ptr<portal::Portal> portal, const Runtime& runtime,
                                   LinuxPermissionsOptions options)
    : portal_(std::move(portal)),
      runtime_(runtime),
      log_(runtime.log, "Permissions"),
      desktops_(options.desktops ? std::move(*options.desktops) : applications::currentDesktops()),
      isX11_(options.isX11.value_or(sessionIsX11())),
      state_(std::make_shared<State>()) {}

LinuxPermissions::~LinuxPermissions() = default;

bool LinuxPermissions::isProcessTrusted() {
  look();
  return isX11_ || state_->answers.givesShortcuts;
}

int LinuxPermissions::focusAuthorization() {
  look();
  return static_cast<int>(state_->answers.focus);
}

void LinuxPermissions::requestFocusAuthorization(std::function<void()> answered) { look(std::move(answered)); }

void LinuxPermissions::onChanged(std::function<void()> callback) { state_->changed = std::move(callback); }

void LinuxPermissions::look(std::function<void()> looked) {
  // The poll comes by again; only who waits for an answer needs a look of its own.
  if (state_->isLooking && !looked) return;
  state_->isLooking = true;
  constexpr std::array<std::string_view, 4> withGnomesSettings{"GNOME", "Unity", "Budgie", "Pantheon"};
  const bool readsSettings = std::ranges::any_of(desktops_, [&](const std::string& desktop) {
    return std::ranges::find(withGnomesSettings, desktop) != withGnomesSettings.end();
  });
  auto done = [&main = runtime_.main, weak = std::weak_ptr<State>(state_),
               looked = std::move(looked)](const Answers& answers) {
    main.post([weak, answers, looked] {
      const auto state = weak.lock();
      if (!state) return;
      state->isLooking = false;
      const bool isNew = state->answers != answers;
      state->answers = answers;
      if (isNew && state->changed) state->changed();
      if (looked) looked();
    });
  };
  const auto made = std::make_shared<Look>(readsSettings, std::move(done));
  portal_->use([made](bus::BusConnection* bus) { made->start(bus); });
}

bool LinuxPermissions::openSettings(const std::string& anchor) {
  const auto words = settingsCommand(anchor, desktops_);
  if (words.empty()) {
    log_.standard("this desktop has no settings for " + anchor);
    return false;
  }
  std::vector<std::string> copies = words;
  std::vector<char*> arguments;
  arguments.reserve(copies.size() + 1);
  for (auto& word : copies) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const auto flags =
      static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
  GError* error = nullptr;
  if (g_spawn_async(nullptr, arguments.data(), nullptr, flags, nullptr, nullptr, nullptr, &error) != FALSE) return true;
  log_.standard("the settings did not open: " + std::string(error->message));
  g_error_free(error);
  return false;
}

}  // namespace quillmere
