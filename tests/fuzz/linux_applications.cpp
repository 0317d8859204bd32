// Installed applications and processes that may be anything: desktop files in any state, /proc texts that their
// programs have had a hand in, audio clients that say of themselves what they like.
#include <glib.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "applications/ApplicationMatch.h"
#include "applications/DesktopEntries.h"
#include "applications/ProcessReader.h"
#include "support/Bytes.h"
#include "support/Require.h"
#include "tabs/BrowserOfHost.h"
#include "text/CleanText.h"

namespace {

using namespace quillmere;
using namespace quillmere::applications;

constexpr std::array<std::string_view, 24> keys{"Type=Application",
                                                "Name=",
                                                "Name[de]=",
                                                "Name[he]=",
                                                "Icon=",
                                                "Icon[de]=",
                                                "Exec=",
                                                "TryExec=",
                                                "Hidden=true",
                                                "NoDisplay=true",
                                                "Terminal=true",
                                                "OnlyShowIn=",
                                                "NotShowIn=",
                                                "StartupWMClass=",
                                                "X-Flatpak=",
                                                "X-SnapInstanceName=",
                                                "Categories=",
                                                "[Desktop Entry]",
                                                "[Desktop Action x]",
                                                "Version=1.0",
                                                "GenericName=",
                                                "Type=Link",
                                                "Comment=",
                                                "# "};
constexpr std::array<std::string_view, 32> words{"firefox",
                                                 "/usr/bin/firefox",
                                                 "env A=b firefox",
                                                 "sh -c \"exec firefox\"",
                                                 "python3 /opt/x/x.py",
                                                 "flatpak run --command=x org.mozilla.firefox",
                                                 "/snap/bin/firefox",
                                                 "/usr/bin/flatpak",
                                                 "%U",
                                                 "\"quo ted\" %f",
                                                 "org.mozilla.firefox",
                                                 "GNOME;KDE;",
                                                 "TerminalEmulator;",
                                                 "icon.png",
                                                 "/usr/share/pixmaps/x.png",
                                                 "../x",
                                                 R"(\s\n\t\\)",
                                                 "\xD7\xA9\xD7\x9C",
                                                 "\xFF",
                                                 "java -jar /opt/app.jar",
                                                 "com.spotify.Client",
                                                 "a/b",
                                                 "electron /opt/e/app.asar",
                                                 "x",
                                                 "wine C:\\\\x.exe",
                                                 "0::/user.slice/app.slice/app-gnome-org.mozilla.firefox-12.scope\n",
                                                 "0::/app.slice/app-flatpak-org.mozilla.firefox-7.scope",
                                                 "snap.firefox.firefox.abc.scope",
                                                 "app-a\\x2db@1.service",
                                                 "[Application]\nname=org.mozilla.firefox\n",
                                                 " (deleted)",
                                                 "Firefox"};

std::string anyText(fuzz::Bytes& in) {
  std::string text;
  for (auto left = 1 + in.below(3); left > 0; --left) text += in.byte() < 0xC0 ? in.oneOf(words) : in.text();
  return text;
}

std::string anyFile(fuzz::Bytes& in) {
  if (in.byte() > 0xE0) return std::string(in.longText());
  std::string text = "[Desktop Entry]\nType=Application\n";
  for (auto left = in.below(12); left > 0; --left) {
    const auto key = in.oneOf(keys);
    text += std::string(key) + (key.ends_with('=') ? anyText(in) : "") + '\n';
  }
  return text;
}

bool hasFoldedID(const std::vector<DesktopEntry>& entries, const std::string& id) {
  return std::ranges::any_of(entries,
                             [&](const auto& each) { return g_ascii_strcasecmp(each.id.c_str(), id.c_str()) == 0; });
}

bool isNamed(const std::string& identifier) {
  return identifier.size() <= maxIdentifierBytes && cleanText(identifier, maxIdentifierBytes) == identifier;
}

void requireSane(const DesktopEntry& entry) {
  QUILLMERE_REQUIRE(!entry.name.empty() && cleanText(entry.name, maxDisplayNameBytes) == entry.name);
  if (!entry.icon) return;
  if (const auto* themed = std::get_if<ThemedIcon>(&*entry.icon)) {
    QUILLMERE_REQUIRE(!themed->name.empty() && themed->name.find('/') == std::string::npos);
  } else if (const auto* file = std::get_if<FileIcon>(&*entry.icon)) {
    QUILLMERE_REQUIRE(file->path.starts_with('/'));
  }
}

ClientFacts anyClient(fuzz::Bytes& in) {
  ClientFacts facts;
  facts.pid = in.number<std::int32_t>();
  facts.pidIsTrusted = in.flag();
  for (auto* each : {&facts.portalAppID, &facts.applicationID, &facts.applicationName, &facts.processBinary,
                     &facts.clientAPI, &facts.nodeName, &facts.mediaRole}) {
    if (in.flag()) *each = anyText(in);
  }
  return facts;
}

ProcessFacts anyProcess(fuzz::Bytes& in) {
  ProcessFacts process;
  process.executable = in.flag() ? anyText(in) : "/usr/bin/firefox";
  auto line = anyText(in);
  std::ranges::replace(line, ' ', '\0');
  process.words = wordsOfCommandLine(line);
  process.shortName = anyText(in).substr(0, 15);
  if (in.flag()) process.cgroup = anyText(in);
  if (in.flag()) process.flatpakID = flatpakIDOfInfo(anyText(in));
  return process;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  ::setenv("LANGUAGE", "de:he", 1);
  ::setenv("LC_ALL", "C.UTF-8", 1);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes in(data, size);
  std::vector<DesktopEntry> read;
  for (auto left = in.below(5); left > 0; --left) {
    const auto id =
        in.byte() < 0xC0
            ? std::string(in.oneOf(std::array<std::string_view, 4>{"org.mozilla.firefox", "Firefox", "firefox", "x"}))
            : std::string(in.text());
    const auto text = anyFile(in);
    std::string problem;
    const auto entry = parseDesktopEntry(id, text, problem);
    // What is refused is refused for a reason, and what is read is read the same again.
    QUILLMERE_REQUIRE(entry.has_value() || !problem.empty());
    if (!entry) continue;
    QUILLMERE_REQUIRE(parseDesktopEntry(id, text, problem) == entry);
    if (entry->isDeleted) continue;
    requireSane(*entry);
    const bool isNew = std::ranges::none_of(read, [&](const auto& each) { return each.id == id; });
    if (isNew) read.push_back(*entry);
  }
  const auto entries = DesktopEntries::of(read, "");
  for (const auto& entry : entries->all()) {
    const auto* found = entries->byID(entry.id);
    QUILLMERE_REQUIRE(found != nullptr && found->id == entry.id);
    if (!entry.sandboxID.empty())
      QUILLMERE_REQUIRE(entries->bySandboxID(entry.sandboxID)->sandboxID == entry.sandboxID);
    if (!entry.startupWMClass.empty()) QUILLMERE_REQUIRE(entries->byWindowClass(entry.startupWMClass) != nullptr);
    QUILLMERE_REQUIRE(isNamed(identifierOf(entry, Identities::builtIn())));
  }
  const auto anyID = std::string(in.text());
  const auto untilNull = anyID.substr(0, anyID.find('\0'));
  QUILLMERE_REQUIRE((entries->byID(anyID) != nullptr) == hasFoldedID(read, untilNull));

  for (int left = 4; left > 0 && !in.isEmpty(); --left) {
    const auto process = anyProcess(in);
    const auto match = matchProcess(process, *entries, Identities::builtIn());
    QUILLMERE_REQUIRE(isNamed(match.identifier));
    if (match.entry != nullptr) {
      QUILLMERE_REQUIRE(!entries->all().empty() && match.entry >= &entries->all().front() &&
                        match.entry <= &entries->all().back());
    }
    const auto facts = anyClient(in);
    QUILLMERE_REQUIRE(isNamed(identifyClient(facts, in.flag() ? &process : nullptr, *entries, Identities::builtIn())));
    QUILLMERE_REQUIRE(isNamed(tellingName(facts.applicationName)));
    QUILLMERE_REQUIRE(tabs::parentInStat(anyText(in)) >= 0);
  }
  return 0;
}
