#include "JackFeeder.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quillmere::pipewire {
namespace {

/// Somebody who takes our links away each time is let have his way.
constexpr int mostCuts = 5;

}  // namespace

JackFeeder::JackFeeder(const GraphModel& model, DetourFactory makeDetour, Logger log)
    : model_(model), makeDetour_(std::move(makeDetour)), log_(std::move(log)) {}

JackFeeder::~JackFeeder() = default;

void JackFeeder::claim(const std::string& application, const Destination& route, const Destination& destination,
                       const std::string& serial) {
  auto& claim = claims_[application];
  claim.route = route;
  claim.taps[destination] = serial;
  std::erase_if(cuts_, [&](const auto& entry) { return entry.first.first == application; });
  settle();
}

void JackFeeder::release(const std::string& application, const Destination& destination) {
  const auto claim = claims_.find(application);
  if (claim == claims_.end()) return;
  const auto tap = claim->second.taps.find(destination);
  if (tap == claim->second.taps.end()) return;
  const auto serial = tap->second;
  claim->second.taps.erase(tap);
  if (claim->second.taps.empty()) claims_.erase(claim);
  for (auto path = paths_.begin(); path != paths_.end();) {
    const bool isLeft = path->first.first == application && path->second.tap == serial && tapOf(path->first).empty();
    if (isLeft) close(path->first, path->second);
    path = isLeft ? paths_.erase(path) : std::next(path);
  }
  settle();
}

void JackFeeder::forget() {
  claims_.clear();
  paths_.clear();
  closing_.clear();
  cuts_.clear();
}

std::map<JackFeeder::Place, std::vector<LinkRecord>> JackFeeder::clientLinks() const {
  std::map<Place, std::vector<LinkRecord>> links;
  for (const auto& [id, node] : model_.nodes()) {
    if (node.kind != NodeKind::jack || node.isOurs) continue;
    const auto& application = model_.identifierOf(node);
    for (const auto& link : model_.linksFrom(id)) {
      const auto* device = model_.node(link.inputNode);
      if (device == nullptr || !GraphModel::isOutput(*device) || device->serial.empty()) continue;
      links[{application, device->serial}].push_back(link);
    }
  }
  return links;
}

Destination JackFeeder::bound(const std::string& device, const Destination& route) const {
  if (route) return route;
  return device == model_.outputSerial(std::nullopt) ? std::nullopt : Destination(device);
}

std::string JackFeeder::tapOf(const Place& place) const {
  const auto claim = claims_.find(place.first);
  if (claim == claims_.end()) return {};
  const auto tap = claim->second.taps.find(bound(place.second, claim->second.route));
  return tap == claim->second.taps.end() ? std::string() : tap->second;
}

void JackFeeder::settle() {
  if (claims_.empty() && paths_.empty() && closing_.empty()) return;
  const auto links = clientLinks();
  // Without the clients' own links the inverse would be heard alone: there is nothing to glide.
  std::erase_if(closing_, [&](const auto& entry) {
    const auto& [place, detour] = entry;
    return detour->isClosed() || detour->hasFailed() || !links.contains(place);
  });
  std::erase_if(paths_, [&](const auto& entry) {
    const auto& [place, path] = entry;
    if (!links.contains(place)) return true;
    if (!path.detour->hasFailed()) return false;
    if (++cuts_[place] == mostCuts) {
      log_.standard(
          logText("a client of %s is cut off from its tap again and again; it plays as it is", place.first.c_str()));
    }
    return true;
  });
  for (const auto& [place, taken] : links) {
    const auto path = paths_.find(place);
    auto tap = tapOf(place);
    // It is bound elsewhere, and the tap for that isn't there yet.
    if (tap.empty() && path != paths_.end() && claims_.contains(place.first)) tap = path->second.tap;
    const bool isThere = !tap.empty() && model_.nodeIDBySerial(tap).has_value();
    if (isThere) {
      lead(place, tap, taken);
    } else if (path != paths_.end()) {
      close(place, path->second);
      paths_.erase(path);
    }
  }
}

void JackFeeder::lead(const Place& place, const std::string& tap, const std::vector<LinkRecord>& links) {
  const auto device = model_.nodeIDBySerial(place.second);
  const auto tapNode = model_.nodeIDBySerial(tap);
  if (!device || !tapNode) return;
  const auto played = playedPorts(model_, *device);
  std::vector<std::string> ports;
  std::vector<std::string> channels;
  for (const auto& port : played) {
    ports.push_back(port.serial);
    channels.push_back(port.channel);
  }
  auto found = paths_.find(place);
  if (found != paths_.end() && found->second.ports != ports) {
    // The device has made its ports anew; every link to them is gone.
    paths_.erase(found);
    found = paths_.end();
  }
  if (found == paths_.end()) {
    const auto cuts = cuts_.find(place);
    if (ports.empty() || (cuts != cuts_.end() && cuts->second >= mostCuts)) return;
    auto detour = makeDetour_(channels);
    if (!detour) return;
    found = paths_.emplace(place, Path{std::move(detour), std::move(ports), tap, false}).first;
  }
  auto& path = found->second;
  path.tap = tap;
  const auto node = path.detour->node();
  if (!node) return;
  const auto wanted = detourLinks(model_, links, *device, *node, *tapNode);
  if (wanted.empty()) return;
  path.detour->link(wanted);
  if (path.isOpen || !path.detour->isLinked()) return;
  path.isOpen = true;
  path.detour->setOpen(true);
}

void JackFeeder::close(const Place& place, Path& path) {
  path.detour->setOpen(false);
  if (path.isOpen) closing_.emplace_back(place, std::move(path.detour));
}

std::set<Destination> JackFeeder::destinations(const std::string& application, const Destination& route) const {
  std::set<Destination> found;
  for (const auto& [place, links] : clientLinks()) {
    if (place.first == application) found.insert(bound(place.second, route));
  }
  return found;
}

bool JackFeeder::hasRunningStream(const std::string& application, const Destination& route,
                                  const Destination& destination) const {
  const auto links = clientLinks();
  return std::any_of(links.begin(), links.end(), [&](const auto& entry) {
    const auto& [place, taken] = entry;
    return place.first == application && bound(place.second, route) == destination &&
           std::any_of(taken.begin(), taken.end(),
                       [&](const auto& link) { return model_.node(link.outputNode)->isRunning; });
  });
}

bool JackFeeder::hasTappedStream(const std::string& application, const Destination& route,
                                 const Destination& destination) const {
  return std::any_of(paths_.begin(), paths_.end(), [&](const auto& entry) {
    const auto& [place, path] = entry;
    return place.first == application && path.isOpen && bound(place.second, route) == destination;
  });
}

}  // namespace quillmere::pipewire
