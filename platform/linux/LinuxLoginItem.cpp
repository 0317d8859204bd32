// Autostart entries, read and written with the desktop's own rules.
#include "platform/linux/LinuxLoginItem.h"

#include <glib.h>
#include <glib/gstdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "applications/CommandLine.h"
#include "applications/DesktopEntries.h"
#include "applications/SmallFile.h"

namespace quillmere {

namespace {

constexpr const char* group = "Desktop Entry";
constexpr const char* enabledKey = "X-GNOME-Autostart-enabled";

struct FreeKeyFile {
  void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, FreeKeyFile>;

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string configHomeOfUser() {
  const auto home = variable("XDG_CONFIG_HOME");
  if (home.starts_with('/')) return home;
  const auto user = variable("HOME");
  return user.starts_with('/') ? user + "/.config" : std::string();
}

std::vector<std::string> split(std::string_view text) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const auto end = std::min(text.find(':'), text.size());
    if (end != 0) parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

std::vector<std::string> configFoldersOfSystem() {
  auto folders = split(variable("XDG_CONFIG_DIRS"));
  std::erase_if(folders, [](const std::string& folder) { return !folder.starts_with('/'); });
  if (folders.empty()) folders = {"/etc/xdg"};
  return folders;
}

std::string takeText(char* text) {
  std::string copy = text == nullptr ? "" : text;
  g_free(text);
  return copy;
}

/// A word of an Exec key, in quotes where it needs them. The key's own escapes are the key file's affair.
std::string execQuoted(const std::string& word) {
  std::string text = "\"";
  for (const char letter : word) {
    if (letter == '"' || letter == '`' || letter == '$' || letter == '\\') text += '\\';
    // A lone percent sign would be a field code.
    if (letter == '%') text += '%';
    text += letter;
  }
  return text + "\"";
}

/// Null for what is no key file of a sensible size.
KeyFile load(const std::string& path) {
  std::string problem;
  const auto text = applications::readSmallFile(path, problem);
  if (!text) return nullptr;
  KeyFile file(g_key_file_new());
  const auto flags = static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
  if (g_key_file_load_from_data(file.get(), text->data(), text->size(), flags, nullptr) == FALSE) return nullptr;
  return file;
}

LoginItem::Failure save(GKeyFile* file, const std::string& path) {
  GError* error = nullptr;
  if (g_key_file_save_to_file(file, path.c_str(), &error) != FALSE) return std::nullopt;
  const std::string message = error->message;
  g_error_free(error);
  return message;
}

/// Whether anything is at this path, even a link that leads nowhere.
bool isThere(const std::string& path) {
  struct stat facts{};
  return ::lstat(path.c_str(), &facts) == 0;
}

}  // namespace

LinuxLoginItem::LinuxLoginItem(LinuxLoginItemOptions options)
    : program_(std::move(options.program)),
      configHome_(options.configHome ? std::move(*options.configHome) : configHomeOfUser()),
      configFolders_(options.configFolders ? std::move(*options.configFolders) : configFoldersOfSystem()),
      desktops_(options.desktops ? std::move(*options.desktops) : applications::currentDesktops()),
      searchPath_(options.searchPath ? std::move(*options.searchPath) : variable("PATH")),
      seesPrograms_(options.seesPrograms) {}

std::string LinuxLoginItem::userFile() const { return configHome_ + "/autostart/" + fileName; }

LoginItem::Failure LinuxLoginItem::registerItem() {
  if (configHome_.empty()) return "there is no folder for the user's configuration";
  if (program_.empty()) return "where the program is installed is not known";
  const auto folder = configHome_ + "/autostart";
  if (::g_mkdir_with_parents(folder.c_str(), 0700) != 0) return folder + ": " + std::strerror(errno);
  // What others have added stays: a delay, a phase, a comment.
  auto file = load(userFile());
  if (!file) file.reset(g_key_file_new());
  g_key_file_set_string(file.get(), group, "Type", "Application");
  if (g_key_file_has_key(file.get(), group, "Name", nullptr) == FALSE) {
    g_key_file_set_string(file.get(), group, "Name", "quillmere");
  }
  g_key_file_set_string(file.get(), group, "Exec", (execQuoted(program_) + " --background").c_str());
  // A program that has been taken away leaves no error at every login.
  g_key_file_set_string(file.get(), group, "TryExec", program_.c_str());
  g_key_file_set_string(file.get(), group, "Icon", "app.quillmere.host");
  g_key_file_set_boolean(file.get(), group, "Terminal", FALSE);
  g_key_file_set_boolean(file.get(), group, enabledKey, TRUE);
  for (const auto* key : {"Hidden", "OnlyShowIn", "NotShowIn"}) g_key_file_remove_key(file.get(), group, key, nullptr);
  return save(file.get(), userFile());
}

LoginItem::Failure LinuxLoginItem::unregisterItem() {
  if (configHome_.empty()) return std::nullopt;
  if (::unlink(userFile().c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) {
    return userFile() + ": " + std::strerror(errno);
  }
  if (statusIn(configFolders_) != LoginItemStatus::enabled) return std::nullopt;
  const auto folder = configHome_ + "/autostart";
  if (::g_mkdir_with_parents(folder.c_str(), 0700) != 0) return folder + ": " + std::strerror(errno);
  const KeyFile file(g_key_file_new());
  g_key_file_set_string(file.get(), group, "Type", "Application");
  g_key_file_set_string(file.get(), group, "Name", "quillmere");
  g_key_file_set_boolean(file.get(), group, "Hidden", TRUE);
  return save(file.get(), userFile());
}

LoginItemStatus LinuxLoginItem::status() {
  std::vector<std::string> folders;
  if (!configHome_.empty()) folders.push_back(configHome_);
  folders.insert(folders.end(), configFolders_.begin(), configFolders_.end());
  return statusIn(folders);
}

LoginItemStatus LinuxLoginItem::statusIn(const std::vector<std::string>& folders) const {
  for (const auto& folder : folders) {
    const auto path = folder + "/autostart/" + fileName;
    if (!isThere(path)) continue;
    const auto file = load(path);
    if (!file) return LoginItemStatus::notRegistered;
    const auto flag = [&](const char* key, bool otherwise) {
      GError* error = nullptr;
      const bool value = g_key_file_get_boolean(file.get(), group, key, &error) != FALSE;
      const bool isTold = error == nullptr;
      g_clear_error(&error);
      return isTold ? value : otherwise;
    };
    const auto text = [&](const char* key) { return takeText(g_key_file_get_string(file.get(), group, key, nullptr)); };
    if (text("Type") != "Application" || flag("Hidden", false) || !flag(enabledKey, true)) {
      return LoginItemStatus::notRegistered;
    }
    const auto list = [&](const char* key) {
      std::vector<std::string> texts;
      char** found = g_key_file_get_string_list(file.get(), group, key, nullptr, nullptr);
      for (char** each = found; each != nullptr && *each != nullptr; ++each) texts.emplace_back(*each);
      g_strfreev(found);
      return texts;
    };
    if (!applications::isMeantFor(list("OnlyShowIn"), list("NotShowIn"), desktops_)) {
      return LoginItemStatus::notRegistered;
    }
    const auto words = applications::wordsOfExec(text("Exec"));
    const auto tryExec = text("TryExec");
    const auto isThereToRun = [this](const std::string& program) {
      return !seesPrograms_ || applications::isProgram(program, searchPath_);
    };
    const bool isRunnable = !words.empty() && isThereToRun(words.front()) && (tryExec.empty() || isThereToRun(tryExec));
    return isRunnable ? LoginItemStatus::enabled : LoginItemStatus::notFound;
  }
  return LoginItemStatus::notRegistered;
}

}  // namespace quillmere
