// Unit names to application identifiers.
#include "applications/UnitName.h"

#include <algorithm>
#include <optional>
#include <ranges>

namespace quillmere::applications {
namespace {

int hexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  while (true) {
    const auto end = text.find(separator);
    pieces.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return pieces;
    text.remove_prefix(end + 1);
  }
}

std::string join(const std::vector<std::string_view>& pieces, std::size_t from, std::size_t end) {
  std::string text;
  for (std::size_t index = from; index < end; ++index) {
    if (index > from) text += '-';
    text += unescapeUnit(pieces[index]);
  }
  return text;
}

void add(std::vector<std::string>& candidates, std::string candidate) {
  if (candidate.ends_with(".desktop")) candidate.resize(candidate.size() - 8);
  if (candidate.empty() || std::ranges::find(candidates, candidate) != candidates.end()) return;
  candidates.push_back(std::move(candidate));
}

std::optional<std::string_view> withoutSuffix(std::string_view text, std::string_view suffix) {
  if (!text.ends_with(suffix)) return std::nullopt;
  text.remove_suffix(suffix.size());
  return text;
}

/// snap.<name>.<command>.<random>.scope, snap.<name>.<command>-<random>.scope, snap.<name>.<service>.service
UnitIdentity identityOfSnap(std::string_view name) {
  const auto pieces = split(name, '.');
  if (pieces.size() < 2 || pieces[0].empty() || pieces[1].empty()) return {};
  std::string_view command = pieces[1];
  constexpr std::size_t randomLength = 37;  // a dash and a UUID
  if (command.size() > randomLength && command[command.size() - randomLength] == '-') {
    command.remove_suffix(randomLength);
  }
  const auto snap = unescapeUnit(pieces[0]);
  return {UnitIdentity::Kind::snap, {snap + "_" + unescapeUnit(command)}};
}

/// <id>-<random>, <launcher>-<id>-<random>; launchers that forget to escape put dashes into the id.
UnitIdentity identityOfScope(std::string_view name) {
  const auto pieces = split(name, '-');
  if (pieces.size() < 2) return {};
  const auto end = pieces.size() - 1;
  if (end >= 2 && pieces[0] == "flatpak") return {UnitIdentity::Kind::flatpak, {join(pieces, 1, end)}};
  UnitIdentity identity{UnitIdentity::Kind::desktop, {}};
  if (end >= 2) add(identity.candidates, join(pieces, 1, end));
  add(identity.candidates, join(pieces, 0, end));
  for (std::size_t from = 2; from < end; ++from) add(identity.candidates, join(pieces, from, end));
  if (identity.candidates.empty()) return {};
  return identity;
}

/// <id>@<random>, <launcher>-<id>@<random>, <id>@autostart, <id>
UnitIdentity identityOfService(std::string_view name) {
  if (const auto at = name.rfind('@'); at != std::string_view::npos) name = name.substr(0, at);
  const auto pieces = split(name, '-');
  if (pieces.size() >= 2 && pieces[0] == "flatpak") {
    return {UnitIdentity::Kind::flatpak, {join(pieces, 1, pieces.size())}};
  }
  UnitIdentity identity{UnitIdentity::Kind::desktop, {}};
  for (std::size_t from = pieces.size() >= 2 ? 1 : 0; from < pieces.size(); ++from) {
    add(identity.candidates, join(pieces, from, pieces.size()));
  }
  add(identity.candidates, join(pieces, 0, pieces.size()));
  if (identity.candidates.empty()) return {};
  return identity;
}

/// dbus-:1.2-org.gnome.Nautilus@0
UnitIdentity identityOfActivation(std::string_view name) {
  if (const auto at = name.rfind('@'); at != std::string_view::npos) name = name.substr(0, at);
  const auto pieces = split(name, '-');
  if (pieces.size() < 2) return {};
  UnitIdentity identity{UnitIdentity::Kind::desktop, {}};
  add(identity.candidates, join(pieces, 1, pieces.size()));
  if (identity.candidates.empty()) return {};
  return identity;
}

}  // namespace

std::string unescapeUnit(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] == '\\' && index + 3 < text.size() && text[index + 1] == 'x') {
      const int high = hexDigit(text[index + 2]);
      const int low = hexDigit(text[index + 3]);
      if (high >= 0 && low >= 0 && (high != 0 || low != 0)) {
        plain += static_cast<char>(high * 16 + low);
        index += 3;
        continue;
      }
    }
    plain += text[index];
  }
  return plain;
}

UnitIdentity identityOfUnit(std::string_view unit) {
  const auto scope = withoutSuffix(unit, ".scope");
  const auto service = withoutSuffix(unit, ".service");
  const auto name = scope ? scope : service;
  if (!name) return {};
  if (name->starts_with("snap.")) return identityOfSnap(name->substr(5));
  if (name->starts_with("app-")) return scope ? identityOfScope(name->substr(4)) : identityOfService(name->substr(4));
  if (service && name->starts_with("dbus-")) return identityOfActivation(name->substr(5));
  return {};
}

UnitIdentity identityOfCgroup(std::string_view text) {
  for (const auto line : split(text, '\n')) {
    const auto first = line.find(':');
    const auto second = first == std::string_view::npos ? first : line.find(':', first + 1);
    if (second == std::string_view::npos) continue;
    const auto controllers = line.substr(first + 1, second - first - 1);
    if (!controllers.empty() && controllers != "name=systemd") continue;
    const auto units = split(line.substr(second + 1), '/');
    for (const auto& unit : std::views::reverse(units)) {
      if (auto identity = identityOfUnit(unit); identity.kind != UnitIdentity::Kind::none) return identity;
    }
  }
  return {};
}

}  // namespace quillmere::applications
