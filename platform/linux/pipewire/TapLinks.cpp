#include "TapLinks.h"

#include <algorithm>
#include <iterator>

namespace quillmere::pipewire {

namespace {

/// Where a device can be played on, in its own order.
std::vector<PortRecord> placesToPlay(std::span<const PortRecord> device) {
  std::vector<PortRecord> places;
  std::copy_if(device.begin(), device.end(), std::back_inserter(places),
               [](const auto& port) { return port.isInput && !port.isMonitor && !port.isControl; });
  std::sort(places.begin(), places.end(), [](const auto& one, const auto& other) { return one.index < other.index; });
  return places;
}

}  // namespace

std::vector<PortPair> outputLinks(std::span<const PortRecord> tap, std::span<const PortRecord> device) {
  const auto ours = [&](std::string_view channel) -> const PortRecord* {
    const auto found = std::find_if(tap.begin(), tap.end(),
                                    [&](const auto& port) { return !port.isInput && port.channel == channel; });
    return found == tap.end() ? nullptr : &*found;
  };
  const auto theirs = placesToPlay(device);
  if (theirs.empty()) return {};
  if (theirs.size() == 1) {
    const auto* mono = ours(monoOutput);
    return mono == nullptr ? std::vector<PortPair>{} : std::vector<PortPair>{{mono->id, theirs.front().id}};
  }
  const auto* left = ours(leftOutput);
  const auto* right = ours(rightOutput);
  if (left == nullptr || right == nullptr) return {};
  const auto front = [&](std::string_view channel, std::size_t place) {
    const auto found =
        std::find_if(theirs.begin(), theirs.end(), [&](const auto& port) { return port.channel == channel; });
    return found == theirs.end() ? theirs[place].id : found->id;
  };
  return {{left->id, front(leftOutput, 0)}, {right->id, front(rightOutput, 1)}};
}

TapLinks::TapLinks(pw_core* core, const GraphModel& model, std::string serial, Logger log,
                   std::function<void()> changed)
    : core_(core), model_(model), serial_(std::move(serial)), log_(std::move(log)), changed_(std::move(changed)) {}

TapLinks::~TapLinks() = default;

bool TapLinks::wantMono() const {
  const auto device = model_.nodeIDBySerial(serial_);
  return device && placesToPlay(model_.portsOf(*device)).size() == 1;
}

bool TapLinks::isComplete() const {
  return !links_.empty() && !hasFailed_ &&
         std::all_of(links_.begin(), links_.end(), [](const auto& entry) { return entry.second->isStanding(); });
}

std::map<TapLinks::Ends, PortPair> TapLinks::wantedLinks(GlobalID node, GlobalID device) const {
  const auto ours = model_.portsOf(node);
  const auto theirs = model_.portsOf(device);
  const auto serialOf = [](const std::vector<PortRecord>& ports, GlobalID id) {
    return std::find_if(ports.begin(), ports.end(), [id](const auto& port) { return port.id == id; })->serial;
  };
  std::map<Ends, PortPair> wanted;
  for (const auto& pair : outputLinks(ours, theirs)) {
    wanted.emplace(Ends{serialOf(ours, pair.first), serialOf(theirs, pair.second)}, pair);
  }
  return wanted;
}

void TapLinks::update(GlobalID node) {
  const auto device = model_.nodeIDBySerial(serial_);
  if (!device) {
    hasFailed_ = true;
    links_.clear();
    return;
  }
  const auto wanted = wantedLinks(node, *device);
  std::erase_if(links_, [&](const auto& entry) {
    const bool isWanted = wanted.contains(entry.first);
    if (isWanted && entry.second->isGone()) hasFailed_ = true;
    return !isWanted;
  });
  for (const auto& [ends, ports] : wanted) {
    if (hasFailed_) return;
    if (links_.contains(ends)) continue;
    const auto* output = model_.port(ports.first);
    const auto* input = model_.port(ports.second);
    auto link =
        std::make_unique<OwnLink>(core_, *output, *input, log_, "a tap can't be linked to its output", changed_);
    hasFailed_ = link->isGone();
    links_.emplace(ends, std::move(link));
  }
}

}  // namespace quillmere::pipewire
