// The rules that name the application of a process and of an audio client. Pure: all they look at is
// given. [any]
#pragma once

#include <string>

#include "DesktopEntries.h"
#include "Identities.h"
#include "ProcessReader.h"
#include "platform/linux/ClientFacts.h"

namespace quillmere::applications {

struct ApplicationMatch {
  /// Empty if no application is known.
  std::string identifier;
  /// Null where an identifier stands without an installed entry. Lives as long as the entries do.
  const DesktopEntry* entry = nullptr;
};

/// The application that a process belongs to: its sandbox, its unit, its executable, its window class.
[[nodiscard]] ApplicationMatch matchProcess(const ProcessFacts& process, const DesktopEntries& entries,
                                            const Identities& identities);

/// The identifier of an audio client; empty if nothing is known.
/// @param process  the client's process, if it can be read
[[nodiscard]] std::string identifyClient(const ClientFacts& facts, const ProcessFacts* process,
                                         const DesktopEntries& entries, const Identities& identities);

/// The identifier under which an installed entry is known.
[[nodiscard]] std::string identifierOf(const DesktopEntry& entry, const Identities& identities);

/// What an application calls itself, without the frame some libraries put around it; empty if that says nothing.
[[nodiscard]] std::string tellingName(std::string_view applicationName);

}  // namespace quillmere::applications
