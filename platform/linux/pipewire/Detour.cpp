#include "Detour.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace quillmere::pipewire {
namespace {

std::vector<PortRecord> sidesOf(const GraphModel& model, GlobalID node, bool isInput) {
  std::vector<PortRecord> found;
  const auto ports = model.portsOf(node);
  std::copy_if(ports.begin(), ports.end(), std::back_inserter(found),
               [isInput](const auto& port) { return port.isInput == isInput && !port.isMonitor && !port.isControl; });
  std::sort(found.begin(), found.end(), [](const auto& one, const auto& other) { return one.index < other.index; });
  return found;
}

}  // namespace

std::vector<PortRecord> playedPorts(const GraphModel& model, GlobalID device) { return sidesOf(model, device, true); }

std::vector<DetourLink> detourLinks(const GraphModel& model, const std::vector<LinkRecord>& clientLinks,
                                    GlobalID device, GlobalID detour, GlobalID tap) {
  using Part = DetourLink::Part;
  const auto played = playedPorts(model, device);
  const auto inputs = sidesOf(model, detour, true);
  const auto outputs = sidesOf(model, detour, false);
  const auto tapInputs = sidesOf(model, tap, true);
  if (played.empty() || inputs.size() != played.size() || outputs.size() != played.size() + tapOutputs) return {};

  std::vector<DetourLink> wanted;
  std::set<std::size_t> used;
  for (const auto& link : clientLinks) {
    const auto port =
        std::find_if(played.begin(), played.end(), [&](const auto& each) { return each.id == link.inputPort; });
    const auto* source = model.port(link.outputPort);
    if (port == played.end() || source == nullptr) return {};
    const auto place = static_cast<std::size_t>(port - played.begin());
    wanted.push_back({Part::source, *source, inputs[place]});
    if (used.insert(place).second) wanted.push_back({Part::inverse, outputs[place], *port});
  }
  for (std::size_t place = played.size(); place < outputs.size(); ++place) {
    const auto input = std::find_if(tapInputs.begin(), tapInputs.end(),
                                    [&](const auto& each) { return each.channel == outputs[place].channel; });
    if (input == tapInputs.end()) return {};
    wanted.push_back({Part::tap, outputs[place], *input});
  }
  return wanted;
}

}  // namespace quillmere::pipewire
