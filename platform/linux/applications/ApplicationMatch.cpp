// From processes and clients to identifiers.
#include "applications/ApplicationMatch.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <optional>

#include "applications/CommandLine.h"
#include "applications/UnitName.h"
#include "text/CleanText.h"

namespace quillmere::applications {
namespace {

std::string identifierOfID(std::string_view id, const Identities& identities) {
  if (id.ends_with(".desktop")) id.remove_suffix(8);
  if (auto known = identities.forDesktopID(id)) return *known;
  return cleanText(id, maxIdentifierBytes);
}

/// A file name may be known even where the entry that started it is the user's own.
std::optional<std::string> identifierOfFile(const ProcessFacts& process, const Program& program,
                                            const Identities& identities) {
  if (fileNameOf(process.executable) != program.name) return std::nullopt;
  return identities.forBinary(program.name);
}

ApplicationMatch inSandbox(const std::string& id, const DesktopEntries& entries, const Identities& identities) {
  const auto* entry = entries.byID(id);
  if (entry == nullptr) entry = entries.bySandboxID(id);
  return {identifierOfID(id, identities), entry};
}

/// "foo_foo" for a file below /snap/foo/; empty for others.
std::string snapOfPath(std::string_view path) {
  for (const std::string_view root : {"/snap/", "/var/lib/snapd/snap/"}) {
    if (!path.starts_with(root)) continue;
    const auto rest = path.substr(root.size());
    const auto end = rest.find('/');
    if (end == std::string_view::npos || end == 0) return {};
    std::string name(rest.substr(0, end));
    name.append("_").append(rest.substr(0, end));
    return name;
  }
  return {};
}

/// Whether a process may be the one that a client says it is.
bool isPlausible(const ClientFacts& facts, const ProcessFacts& process) {
  if (facts.pidIsTrusted || facts.processBinary.empty()) return true;
  return facts.processBinary == fileNameOf(process.executable) || facts.processBinary == process.shortName ||
         (!process.words.empty() && facts.processBinary == fileNameOf(process.words[0]));
}

}  // namespace

std::string identifierOf(const DesktopEntry& entry, const Identities& identities) {
  if (auto known = identities.forDesktopID(entry.id)) return *known;
  if (!entry.sandboxID.empty()) return identifierOfID(entry.sandboxID, identities);
  return cleanText(entry.id, maxIdentifierBytes);
}

ApplicationMatch matchProcess(const ProcessFacts& process, const DesktopEntries& entries,
                              const Identities& identities) {
  if (!process.flatpakID.empty()) return inSandbox(process.flatpakID, entries, identities);
  const auto unit = identityOfCgroup(process.cgroup);
  if (unit.kind == UnitIdentity::Kind::flatpak || unit.kind == UnitIdentity::Kind::snap) {
    return inSandbox(unit.candidates.front(), entries, identities);
  }
  if (const auto snap = snapOfPath(process.executable); !snap.empty()) return inSandbox(snap, entries, identities);

  const auto program = programOf(process.words, process.executable);
  const auto* ownEntry = entries.byProgram(program);
  const DesktopEntry* entry = nullptr;
  for (const auto& candidate : unit.candidates) {
    entry = entries.byID(candidate);
    if (entry != nullptr) break;
  }
  // What is typed into a terminal runs in the terminal's unit.
  if (entry != nullptr && entry->hostsOthers && entry != ownEntry) entry = nullptr;
  if (entry == nullptr) entry = ownEntry;
  if (entry == nullptr && !program.isAnonymous) entry = entries.byWindowClass(program.name);
  if (entry == nullptr) return {};
  if (!identities.forDesktopID(entry->id)) {
    if (auto known = identifierOfFile(process, program, identities)) return {*known, entry};
  }
  return {identifierOf(*entry, identities), entry};
}

std::string tellingName(std::string_view applicationName) {
  for (const std::string_view frame : {"ALSA plug-in [", "PipeWire ALSA ["}) {
    if (!applicationName.starts_with(frame) || !applicationName.ends_with(']')) continue;
    applicationName.remove_prefix(frame.size());
    applicationName.remove_suffix(1);
    break;
  }
  constexpr std::array<std::string_view, 13> empty{
      "playback", "playback stream", "audio stream", "audio-src", "audiosrc",    "audio",     "output",
      "stream",   "pipewire",        "libcanberra",  "unknown",   "libpipewire", "pulseaudio"};
  auto name = cleanText(applicationName, maxIdentifierBytes);
  char* lower = g_ascii_strdown(name.c_str(), static_cast<gssize>(name.size()));
  const bool saysNothing = std::ranges::find(empty, std::string_view(lower)) != empty.end() || isInterpreter(lower);
  g_free(lower);
  return saysNothing ? std::string() : name;
}

std::string identifyClient(const ClientFacts& facts, const ProcessFacts* process, const DesktopEntries& entries,
                           const Identities& identities) {
  if (!facts.portalAppID.empty()) return identifierOfID(facts.portalAppID, identities);

  if (process != nullptr && !isPlausible(facts, *process)) process = nullptr;
  Program program{{}, {}, true};
  if (process != nullptr) {
    if (auto match = matchProcess(*process, entries, identities); !match.identifier.empty()) return match.identifier;
    program = programOf(process->words, process->executable);
  } else if (!facts.processBinary.empty()) {
    program = programOf({facts.processBinary});
    const auto* entry = entries.byProgram(program);
    if (entry == nullptr && !program.isAnonymous) entry = entries.byWindowClass(program.name);
    if (entry != nullptr) return identifierOf(*entry, identities);
  }

  if (!facts.applicationID.empty()) {
    if (const auto* entry = entries.byID(facts.applicationID)) return identifierOf(*entry, identities);
    if (auto identifier = identifierOfID(facts.applicationID, identities); !identifier.empty()) return identifier;
  }
  if (auto known = identities.forBinary(program.name)) return *known;
  if (!program.isAnonymous && !program.name.empty()) return cleanText(program.name, maxIdentifierBytes);
  // An interpreter alone names nobody; what the client calls itself may.
  if (auto name = tellingName(facts.applicationName); !name.empty()) return name;
  if (!program.name.empty()) return cleanText(program.name, maxIdentifierBytes);
  if (!facts.processBinary.empty()) return cleanText(facts.processBinary, maxIdentifierBytes);
  return tellingName(facts.nodeName);
}

}  // namespace quillmere::applications
