#include "ClientIdentity.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <limits>

namespace quillmere {
namespace {

// Names that libraries give when the application gave none.
constexpr std::array<std::string_view, 7> emptyNames{"playback", "Playback Stream", "audio stream", "Audio Stream",
                                                     "Playback", "libcanberra",     "PipeWire"};

std::string_view withoutPlugInFrame(std::string_view name) {
  constexpr std::string_view frame = "ALSA plug-in [";
  if (!name.starts_with(frame) || !name.ends_with(']')) return name;
  name.remove_prefix(frame.size());
  name.remove_suffix(1);
  return name;
}

bool saysNothing(std::string_view name) {
  for (const auto empty : emptyNames) {
    if (name == empty) return true;
  }
  return name.empty();
}

}  // namespace

std::string defaultApplicationIdentifier(const ClientFacts& facts) {
  for (const auto* candidate :
       {&facts.portalAppID, &facts.applicationID, &facts.processBinary, &facts.applicationName, &facts.nodeName}) {
    if (!candidate->empty()) return *candidate;
  }
  return {};
}

std::string clientDisplayName(const ClientFacts& facts) {
  const auto name = withoutPlugInFrame(facts.applicationName);
  if (!saysNothing(name)) return std::string(name);
  if (!facts.processBinary.empty()) return facts.processBinary;
  if (!facts.applicationID.empty()) return facts.applicationID;
  return saysNothing(facts.nodeName) ? std::string(name) : facts.nodeName;
}

namespace pipewire {
namespace {

std::string either(const Properties& client, const Properties& stream, std::string_view key) {
  const auto own = text(client, key);
  return std::string(own.empty() ? text(stream, key) : own);
}

std::int32_t processID(std::string_view digits, std::string& problem) {
  if (digits.empty()) return 0;
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error == std::errc{} && end == digits.data() + digits.size() && value > 0 &&
      value <= std::numeric_limits<std::int32_t>::max()) {
    return static_cast<std::int32_t>(value);
  }
  problem = "process id \"" + std::string(digits.substr(0, 64)) + "\" of an audio client ignored";
  return 0;
}

}  // namespace

ClientFacts factsOf(const Properties& client, const Properties& stream, std::string& problem) {
  ClientFacts facts;
  facts.clientAPI = either(client, stream, "client.api");
  // For the pulse server's clients the kernel knows the server only.
  const auto trusted = text(client, "pipewire.sec.pid");
  facts.pidIsTrusted = facts.clientAPI != "pipewire-pulse" && !trusted.empty();
  facts.pid = processID(
      facts.pidIsTrusted ? trusted : std::string_view(either(client, stream, "application.process.id")), problem);
  if (facts.pid == 0) facts.pidIsTrusted = false;
  facts.portalAppID = std::string(text(client, "pipewire.access.portal.app_id"));
  facts.applicationID = either(client, stream, "application.id");
  facts.applicationName = either(client, stream, "application.name");
  facts.processBinary = either(client, stream, "application.process.binary");
  facts.nodeName = std::string(text(stream, "node.name"));
  facts.mediaRole = std::string(text(stream, "media.role"));
  return facts;
}

}  // namespace pipewire
}  // namespace quillmere
