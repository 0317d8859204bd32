// Words from several sides, and what they come to.
#include "platform/linux/LinuxDesktopLook.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <map>
#include <utility>

#include "applications/DesktopEntries.h"
#include "bus/BusConnection.h"
#include "look/LookFact.h"
#include "portal/Portal.h"
#include "runtime/Threads.h"

namespace quillmere {

namespace {

constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr auto answerTimeout = std::chrono::seconds(20);

std::string configHomeOfUser() {
  const auto variable = [](const char* name) {
    const char* value = std::getenv(name);
    return std::string(value == nullptr ? "" : value);
  };
  const auto home = variable("XDG_CONFIG_HOME");
  return home.starts_with('/') ? home : variable("HOME") + "/.config";
}

/// From the answer to ReadAll.
std::vector<look::Fact> factsIn(GVariant* reply) {
  std::vector<look::Fact> facts;
  if (!bus::isOfType(reply, "(a{sa{sv}})")) return facts;
  const bus::Variant spaces(g_variant_get_child_value(reply, 0));
  for (std::size_t at = 0; at < g_variant_n_children(spaces.get()); ++at) {
    const bus::Variant entry(g_variant_get_child_value(spaces.get(), at));
    const char* space = nullptr;
    g_variant_get_child(entry.get(), 0, "&s", &space);
    const bus::Variant settings(g_variant_get_child_value(entry.get(), 1));
    for (std::size_t each = 0; each < g_variant_n_children(settings.get()); ++each) {
      const bus::Variant setting(g_variant_get_child_value(settings.get(), each));
      const char* key = nullptr;
      g_variant_get_child(setting.get(), 0, "&s", &key);
      const bus::Variant value(g_variant_get_child_value(setting.get(), 1));
      if (auto fact = look::factOf(space, key, value.get())) facts.push_back(std::move(*fact));
    }
  }
  return facts;
}

}  // namespace

/// [main]
struct LinuxDesktopLook::State {
  std::map<std::string, bool> stillness;
  std::map<std::string, bool> contrast;
  LookWishes told;
  std::function<void(const LookWishes&)> wished;

  void take(const std::vector<look::Fact>& facts) {
    for (const auto& fact : facts)
      (fact.wish == look::Wish::stillness ? stillness : contrast)[fact.source] = fact.isWished;
    const auto isWishedByAny = [](const std::map<std::string, bool>& sources) {
      return std::ranges::any_of(sources, [](const auto& source) { return source.second; });
    };
    const LookWishes now{isWishedByAny(stillness), isWishedByAny(contrast)};
    if (std::exchange(told, now) != now && wished) wished(now);
  }
};

LinuxDesktopLook::LinuxDesktopLook(std::shared_ptr<portal::Portal> portal, const Runtime& runtime,
                                   LinuxDesktopLookOptions options)
    : portal_(std::move(portal)), runtime_(runtime), options_(std::move(options)), state_(std::make_shared<State>()) {}

LinuxDesktopLook::~LinuxDesktopLook() = default;

void LinuxDesktopLook::onWished(std::function<void(const LookWishes&)> callback) {
  QUILLMERE_CHECK_ON(runtime_.main, "the desktop's wishes are asked for off the main thread");
  state_->wished = std::move(callback);
  if (state_->wished && !std::exchange(isLooking_, true)) look();
}

void LinuxDesktopLook::look() {
  const auto take = [&main = runtime_.main, weak = std::weak_ptr<State>(state_)](std::vector<look::Fact> facts) {
    if (facts.empty()) return;
    main.post([weak, facts = std::move(facts)] {
      if (const auto state = weak.lock()) state->take(facts);
    });
  };
  runtime_.background.post([take, options = options_] {
    take(look::factsInFiles(options.configHome ? *options.configHome : configHomeOfUser(),
                            options.desktops ? *options.desktops : applications::currentDesktops()));
  });
  portal_->use([take](bus::BusConnection* bus) {
    if (bus == nullptr) return;
    bus->subscribe(settingsInterface, "SettingChanged", portal::objectPath, nullptr,
                   [take](const std::string&, GVariant* parameters) {
                     if (!bus::isOfType(parameters, "(ssv)")) return;
                     const char* space = nullptr;
                     const char* key = nullptr;
                     g_variant_get(parameters, "(&s&sv)", &space, &key, nullptr);
                     const bus::Variant value(g_variant_get_child_value(parameters, 2));
                     if (auto fact = look::factOf(space, key, value.get())) take({std::move(*fact)});
                   });
    const auto& spaces = look::portalSpaces();
    bus->ask(portal::service, portal::objectPath, settingsInterface, "ReadAll",
             g_variant_new("(@as)", g_variant_new_strv(spaces.data(), static_cast<gssize>(spaces.size()))),
             answerTimeout, G_DBUS_CALL_FLAGS_NONE, [take](GVariant* reply, const GError*) { take(factsIn(reply)); });
  });
}

}  // namespace quillmere
