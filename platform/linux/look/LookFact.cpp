// Whose settings say what.
#include "look/LookFact.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "applications/SmallFile.h"

namespace quillmere::look {

namespace {

bool isOne(GVariant* value) { return g_variant_get_uint32(value) == 1; }

bool isTrue(GVariant* value) { return g_variant_get_boolean(value) != FALSE; }

bool isFalse(GVariant* value) { return !isTrue(value); }

bool isContrastTheme(std::string_view name) { return name.find("HighContrast") != std::string_view::npos; }

bool namesContrastTheme(GVariant* value) { return isContrastTheme(g_variant_get_string(value, nullptr)); }

struct PortalRule {
  const char* space;
  const char* key;
  const char* type;
  Wish wish;
  bool (*isWished)(GVariant* value);
};

constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* gnome = "org.gnome.desktop.interface";
constexpr const char* gnomeAccess = "org.gnome.desktop.a11y.interface";

constexpr std::array portalRules{
    PortalRule{appearance, "reduced-motion", "u", Wish::stillness, isOne},
    PortalRule{appearance, "contrast", "u", Wish::contrast, isOne},
    PortalRule{gnome, "enable-animations", "b", Wish::stillness, isFalse},
    PortalRule{gnome, "gtk-theme", "s", Wish::contrast, namesContrastTheme},
    PortalRule{gnomeAccess, "high-contrast", "b", Wish::contrast, isTrue},
};

bool isNought(const std::string& text) {
  char* end = nullptr;
  const double number = g_ascii_strtod(text.c_str(), &end);
  return end != text.c_str() && number == 0.0;
}

bool isOff(const std::string& text) { return text == "false" || text == "0"; }

bool isContrastName(const std::string& text) { return isContrastTheme(text); }

struct FileRule {
  const char* file;
  const char* group;
  const char* key;
  /// The desktop whose file this is; null for one that many share.
  const char* desktop;
  Wish wish;
  bool (*isWished)(const std::string& text);
};

constexpr std::array fileRules{
    FileRule{"kdeglobals", "KDE", "AnimationDurationFactor", "KDE", Wish::stillness, isNought},
    FileRule{"kdeglobals", "General", "ColorScheme", "KDE", Wish::contrast, isContrastName},
    FileRule{"gtk-4.0/settings.ini", "Settings", "gtk-enable-animations", nullptr, Wish::stillness, isOff},
    FileRule{"gtk-4.0/settings.ini", "Settings", "gtk-theme-name", nullptr, Wish::contrast, isContrastName},
    FileRule{"gtk-3.0/settings.ini", "Settings", "gtk-enable-animations", nullptr, Wish::stillness, isOff},
    FileRule{"gtk-3.0/settings.ini", "Settings", "gtk-theme-name", nullptr, Wish::contrast, isContrastName},
};

struct FreeKeyFile {
  void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, FreeKeyFile>;

/// Null for what is no settings file.
KeyFile load(const std::string& path) {
  std::string problem;
  const auto text = applications::readSmallFile(path, problem);
  if (!text) return nullptr;
  KeyFile file(g_key_file_new());
  if (g_key_file_load_from_data(file.get(), text->data(), text->size(), G_KEY_FILE_NONE, nullptr) == FALSE) {
    return nullptr;
  }
  return file;
}

}  // namespace

std::optional<Fact> factOf(const std::string& space, const std::string& key, GVariant* value) {
  const auto rule =
      std::ranges::find_if(portalRules, [&](const PortalRule& each) { return each.space == space && each.key == key; });
  if (rule == portalRules.end() || value == nullptr) return std::nullopt;
  bus::Variant inner(g_variant_ref(value));
  while (bus::isOfType(inner.get(), "v")) inner.reset(g_variant_get_variant(inner.get()));
  if (!bus::isOfType(inner.get(), rule->type)) return std::nullopt;
  return Fact{space + "/" + key, rule->wish, rule->isWished(inner.get())};
}

std::vector<Fact> factsInFiles(const std::string& configHome, const std::vector<std::string>& desktops) {
  std::vector<Fact> facts;
  for (const auto& rule : fileRules) {
    if (rule.desktop != nullptr && std::ranges::find(desktops, rule.desktop) == desktops.end()) continue;
    const auto file = load(configHome + "/" + rule.file);
    if (!file) continue;
    char* text = g_key_file_get_string(file.get(), rule.group, rule.key, nullptr);
    if (text == nullptr) continue;
    facts.push_back({std::string(rule.file) + "/" + rule.key, rule.wish, rule.isWished(text)});
    g_free(text);
  }
  return facts;
}

const std::vector<const char*>& portalSpaces() {
  static const std::vector<const char*> spaces{appearance, gnome, gnomeAccess};
  return spaces;
}

}  // namespace quillmere::look
