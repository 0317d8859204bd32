// Desktop files to entries.
#include "applications/DesktopEntry.h"

#include <glib.h>

#include <memory>
#include <string_view>

#include "text/CleanText.h"

namespace quillmere::applications {
namespace {

constexpr const char* group = "Desktop Entry";

struct FreeKeyFile {
  void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, FreeKeyFile>;

std::string take(char* text) {
  std::string copy = text == nullptr ? std::string() : std::string(text);
  g_free(text);
  return copy;
}

std::string textOf(GKeyFile* file, const char* key) { return take(g_key_file_get_string(file, group, key, nullptr)); }

bool flagOf(GKeyFile* file, const char* key) { return g_key_file_get_boolean(file, group, key, nullptr) == TRUE; }

std::vector<std::string> listOf(GKeyFile* file, const char* key) {
  std::vector<std::string> texts;
  char** list = g_key_file_get_string_list(file, group, key, nullptr, nullptr);
  for (char** text = list; text != nullptr && *text != nullptr; ++text) texts.emplace_back(*text);
  g_strfreev(list);
  return texts;
}

bool hasCategory(std::string_view categories, std::string_view wanted) {
  while (!categories.empty()) {
    const auto end = categories.find(';');
    if (categories.substr(0, end) == wanted) return true;
    if (end == std::string_view::npos) return false;
    categories.remove_prefix(end + 1);
  }
  return false;
}

std::optional<IconReference> iconOf(std::string icon) {
  if (icon.empty() || icon.size() > 4096) return std::nullopt;
  if (icon.starts_with('/')) return FileIcon{std::move(icon)};
  // A name with an extension is a common mistake; the theme knows it without.
  for (const std::string_view extension : {".png", ".svg", ".xpm"}) {
    if (icon.size() > extension.size() && icon.ends_with(extension)) icon.erase(icon.size() - extension.size());
  }
  if (icon.find('/') != std::string::npos) return std::nullopt;
  return ThemedIcon{std::move(icon)};
}

std::string snapIDOf(GKeyFile* file, const std::string& id, const std::vector<std::string>& words) {
  if (!textOf(file, "X-SnapInstanceName").empty()) return id;
  for (const auto& word : words) {
    if (word.starts_with("/snap/bin/") || word.starts_with("/var/lib/snapd/snap/bin/")) return id;
  }
  return {};
}

}  // namespace

std::optional<DesktopEntry> parseDesktopEntry(const std::string& id, const std::string& text, std::string& problem) {
  const KeyFile file(g_key_file_new());
  GError* error = nullptr;
  if (g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE, &error) == FALSE) {
    problem = error->message;
    g_error_free(error);
    return std::nullopt;
  }
  if (textOf(file.get(), "Type") != "Application") {
    problem = "not an application";
    return std::nullopt;
  }
  DesktopEntry entry;
  entry.id = id;
  if (flagOf(file.get(), "Hidden")) {
    entry.isDeleted = true;
    return entry;
  }
  entry.name =
      cleanText(take(g_key_file_get_locale_string(file.get(), group, "Name", nullptr, nullptr)), maxDisplayNameBytes);
  if (entry.name.empty()) {
    problem = "no name";
    return std::nullopt;
  }
  entry.icon = iconOf(take(g_key_file_get_locale_string(file.get(), group, "Icon", nullptr, nullptr)));
  const auto words = wordsOfExec(textOf(file.get(), "Exec"));
  entry.program = programOf(words);
  entry.wordCount = words.size();
  entry.startupWMClass = textOf(file.get(), "StartupWMClass");
  entry.sandboxID = textOf(file.get(), "X-Flatpak");
  if (entry.sandboxID.empty()) entry.sandboxID = flatpakIDOf(words);
  if (entry.sandboxID.empty()) entry.sandboxID = snapIDOf(file.get(), id, words);
  entry.runsInTerminal = flagOf(file.get(), "Terminal");
  entry.isVisible = !flagOf(file.get(), "NoDisplay");
  entry.onlyShowIn = listOf(file.get(), "OnlyShowIn");
  entry.notShowIn = listOf(file.get(), "NotShowIn");
  entry.tryExec = textOf(file.get(), "TryExec");
  const auto categories = textOf(file.get(), "Categories");
  entry.hostsOthers = hasCategory(categories, "TerminalEmulator") || hasCategory(categories, "IDE");
  return entry;
}

}  // namespace quillmere::applications
