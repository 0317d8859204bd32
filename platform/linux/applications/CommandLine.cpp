// Command lines to programs.
#include "applications/CommandLine.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <span>

namespace quillmere::applications {
namespace {

using Words = std::span<const std::string>;

template <std::size_t count>
bool isOneOf(std::string_view text, const std::array<std::string_view, count>& texts) {
  return std::ranges::find(texts, text) != texts.end();
}

constexpr std::array<std::string_view, 9> shells{"sh", "bash", "dash", "zsh", "fish", "ksh", "ash", "mksh", "tcsh"};
constexpr std::array<std::string_view, 14> scripting{"python",      "pypy", "perl", "ruby",   "node",
                                                     "nodejs",      "php",  "lua",  "luajit", "gjs",
                                                     "gjs-console", "mono", "deno", "guile"};
constexpr std::array<std::string_view, 3> windows{"wine-preloader", "wine64-preloader", "wine"};

/// Programs that only run another one, whose words follow theirs.
constexpr std::array<std::string_view, 16> wrappers{
    "env",       "nice",        "ionice",   "nohup",       "setsid",           "stdbuf", "prime-run", "optirun",
    "primusrun", "gamemoderun", "mangohud", "dbus-launch", "dbus-run-session", "pkexec", "firejail",  "systemd-run"};

/// Files that are called the same in every application; their folder tells.
constexpr std::array<std::string_view, 10> namelessFiles{"app.asar", "main",  "index", "app",      "__main__",
                                                         "cli",      "start", "run",   "launcher", "default_app.asar"};
constexpr std::array<std::string_view, 9> namelessFolders{"resources", "dist", "build", "app",     "lib",
                                                          "src",       "bin",  "out",   "electron"};

/// "python3.11" gives "python"; "electron28" gives "electron".
std::string_view withoutVersion(std::string_view name) {
  while (!name.empty() && (std::isdigit(static_cast<unsigned char>(name.back())) != 0 || name.back() == '.')) {
    name.remove_suffix(1);
  }
  return name;
}

bool isElectron(std::string_view base) { return base == "electron"; }
bool isJava(std::string_view base) { return base == "java" || base == "javaw"; }
bool isPython(std::string_view base) { return base == "python" || base == "pypy"; }
bool isShell(std::string_view base) { return isOneOf(base, shells); }

std::string_view withoutExtension(std::string_view name) {
  constexpr std::array<std::string_view, 14> extensions{".py", ".pyw", ".js",  ".mjs", ".cjs", ".pl",   ".rb",
                                                        ".sh", ".jar", ".php", ".lua", ".exe", ".asar", ".bin"};
  for (const auto extension : extensions) {
    if (name.size() > extension.size() && name.ends_with(extension)) {
      name.remove_suffix(extension.size());
      break;
    }
  }
  return name;
}

std::string nameOfScript(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  auto name = fileNameOf(path);
  bool nameless = isOneOf(name, namelessFiles) || isOneOf(withoutExtension(name), namelessFiles);
  auto folder = path;
  while (nameless && folder.size() > name.size() + 1) {
    folder.remove_suffix(name.size() + 1);
    name = fileNameOf(folder);
    nameless = isOneOf(name, namelessFolders) || name.empty();
  }
  return std::string(withoutExtension(name.empty() ? fileNameOf(path) : name));
}

Program plain(std::string_view path) { return {std::string(path), std::string(fileNameOf(path)), false}; }

Program anonymous(std::string_view path) { return {std::string(path), std::string(fileNameOf(path)), true}; }

Program script(std::string_view path) { return {std::string(path), nameOfScript(path), false}; }

/// Drops a wrapper and its options; the words that remain start with what it runs.
Words afterWrapper(Words words) {
  std::size_t index = 1;
  while (index < words.size()) {
    const auto& word = words[index];
    const bool assignment = word.find('=') != std::string::npos && !word.starts_with('/') && !word.starts_with('.');
    if (word == "--") return words.subspan(index + 1);
    if (!word.starts_with('-') && !assignment) break;
    // The options with a value of their own that desktop entries really use.
    if (word == "-u" || word == "-n" || word == "-S" || word == "-c") ++index;
    ++index;
  }
  return index < words.size() ? words.subspan(index) : Words{};
}

Program ofJava(Words words) {
  for (std::size_t index = 1; index < words.size(); ++index) {
    const auto& word = words[index];
    if (word == "-jar" && index + 1 < words.size()) return script(words[index + 1]);
    if (word == "-cp" || word == "-classpath" || word == "--class-path" || word == "-p" || word == "--module-path" ||
        word == "--add-modules" || word == "--add-opens" || word == "--add-exports") {
      ++index;
      continue;
    }
    if ((word == "-m" || word == "--module") && index + 1 < words.size()) return plain(words[index + 1]);
    if (word.starts_with('-')) continue;
    // A main class: its own name, or its package's where it is only called Main.
    std::string_view mainClass = word;
    auto dot = mainClass.rfind('.');
    if (dot != std::string_view::npos && mainClass.substr(dot + 1) == "Main") {
      mainClass = mainClass.substr(0, dot);
      dot = mainClass.rfind('.');
    }
    return {word, std::string(dot == std::string_view::npos ? mainClass : mainClass.substr(dot + 1)), false};
  }
  return anonymous(words[0]);
}

Program ofScripting(Words words, std::string_view base) {
  for (std::size_t index = 1; index < words.size(); ++index) {
    const auto& word = words[index];
    if (isPython(base) && word == "-m" && index + 1 < words.size()) return plain(words[index + 1]);
    if (isPython(base) && (word == "-W" || word == "-X")) {
      ++index;
      continue;
    }
    if (word == "-c" || word == "-e" || word == "-" || word == "--eval") break;
    if (word == "--") continue;
    if (word.starts_with('-') || word.empty()) continue;
    return script(word);
  }
  return anonymous(words[0]);
}

Program ofShell(Words words) {
  for (std::size_t index = 1; index < words.size(); ++index) {
    const auto& word = words[index];
    if (word == "-c" && index + 1 < words.size()) {
      auto inner = wordsOfExec(words[index + 1]);
      if (!inner.empty() && inner[0] == "exec") inner.erase(inner.begin());
      if (inner.empty() || isShell(fileNameOf(inner[0]))) break;
      return programOf(inner);
    }
    if (word.starts_with('-') || word.empty()) continue;
    return script(word);
  }
  return anonymous(words[0]);
}

/// A percent sign of its own stands twice in an Exec key.
std::string withoutEscapedPercents(std::string_view word) {
  std::string plain;
  for (std::size_t at = 0; at < word.size(); ++at) {
    plain += word[at];
    if (word.substr(at, 2) == "%%") ++at;
  }
  return plain;
}

/// C:\Games\Foo\Foo.exe
Program ofWine(Words words) {
  for (const auto& word : words) {
    std::string lower(word);
    std::ranges::transform(lower, lower.begin(), [](unsigned char character) { return std::tolower(character); });
    if (!lower.ends_with(".exe")) continue;
    const auto slash = word.find_last_of("\\/");
    auto name = word.substr(slash == std::string::npos ? 0 : slash + 1);
    name.resize(name.size() - 4);
    if (!name.empty()) return {word, name, false};
  }
  return anonymous(words[0]);
}

}  // namespace

std::string_view fileNameOf(std::string_view path) {
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

bool isInterpreter(std::string_view fileName) {
  const auto base = withoutVersion(fileName);
  return isShell(base) || isOneOf(base, scripting) || isJava(base) || isElectron(base) || isOneOf(fileName, windows);
}

std::vector<std::string> wordsOfExec(const std::string& exec) {
  if (exec.size() > 16384) return {};
  int count = 0;
  char** parsed = nullptr;
  if (g_shell_parse_argv(exec.c_str(), &count, &parsed, nullptr) == FALSE) return {};
  std::vector<std::string> words;
  for (int index = 0; index < count; ++index) {
    const std::string_view word = parsed[index];
    const bool fieldCode = word.size() == 2 && word[0] == '%' && word[1] != '%';
    if (!fieldCode) words.push_back(withoutEscapedPercents(word));
  }
  g_strfreev(parsed);
  return words;
}

Program programOf(const std::vector<std::string>& words, std::string_view executable) {
  std::vector<std::string> known;
  if (words.empty()) {
    if (executable.empty()) return {{}, {}, true};
    known.emplace_back(executable);
  } else {
    known = words;
    if (!executable.empty()) known[0] = std::string(executable);
  }
  Words rest(known);
  while (!rest.empty() && isOneOf(fileNameOf(rest[0]), wrappers)) {
    const auto inner = afterWrapper(rest);
    if (inner.empty()) return anonymous(rest[0]);
    rest = inner;
  }
  if (rest.empty() || rest[0].empty()) return {{}, {}, true};
  const auto fileName = fileNameOf(rest[0]);
  if (fileName == "flatpak" || fileName == "snap" || fileName == "bwrap" || fileName == "gtk-launch") {
    return anonymous(rest[0]);
  }
  const auto base = withoutVersion(fileName);
  // There the first word as it was called is the program, and the executable its interpreter.
  if (isOneOf(fileName, windows)) return ofWine(words.empty() ? rest : Words(words));
  if (isJava(base)) return ofJava(rest);
  if (isShell(base)) return ofShell(rest);
  if (isElectron(base) || isOneOf(base, scripting)) return ofScripting(rest, base);
  return plain(rest[0]);
}

std::string flatpakIDOf(const std::vector<std::string>& words) {
  const auto flatpak = std::ranges::find_if(words, [](const auto& word) { return fileNameOf(word) == "flatpak"; });
  if (flatpak == words.end()) return {};
  auto word = flatpak + 1;
  if (word == words.end() || *word != "run") return {};
  for (++word; word != words.end(); ++word) {
    if (!word->starts_with('-') && word->find('.') != std::string::npos) return *word;
  }
  return {};
}

}  // namespace quillmere::applications
