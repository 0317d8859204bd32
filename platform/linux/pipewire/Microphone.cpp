#include "Microphone.h"

#include <algorithm>
#include <set>
#include <vector>

namespace quillmere::pipewire {
namespace {

class Search {
 public:
  Search(const GraphModel& model, GlobalID recorder) : model_(model) { add(recorder); }

  bool findsAMicrophone() {
    while (!open_.empty()) {
      const auto node = open_.back();
      open_.pop_back();
      for (const auto& link : model_.linksInto(node)) {
        if (leadsToAMicrophone(link)) return true;
      }
    }
    return false;
  }

 private:
  void add(GlobalID node) {
    if (seen_.insert(node).second) open_.push_back(node);
  }

  /// The sides of a filter at which the sound of this side goes in.
  [[nodiscard]] std::vector<GlobalID> inputSides(GlobalID id, const NodeRecord& side) const {
    std::vector<GlobalID> recording;
    std::vector<GlobalID> sinks;
    for (const auto other : model_.linkGroupOf(id)) {
      const auto* node = model_.node(other);
      if (node == nullptr) continue;
      if (node->kind == NodeKind::recording) recording.push_back(other);
      if (node->kind == NodeKind::sink || node->kind == NodeKind::duplex) sinks.push_back(other);
    }
    // An echo canceller has two ways through: what is played goes from its sink to its playback stream, what the
    // microphone hears to its source.
    return side.kind == NodeKind::playback && !sinks.empty() ? sinks : recording;
  }

  bool leadsToAMicrophone(const LinkRecord& link) {
    const auto* origin = model_.node(link.outputNode);
    const bool isMonitor = model_.isMonitorPort(link.outputPort);
    const auto kind = origin == nullptr ? NodeKind::other : origin->kind;
    if (kind == NodeKind::source || (kind == NodeKind::duplex && !isMonitor)) {
      // A virtual microphone may hand out its sound through ports that call themselves monitors.
      const auto sides = kind == NodeKind::source ? inputSides(link.outputNode, *origin) : std::vector<GlobalID>{};
      for (const auto side : sides) add(side);
      return sides.empty();
    }
    if (kind == NodeKind::playback) {
      // An application's own sound, unless it is a filter's.
      for (const auto side : inputSides(link.outputNode, *origin)) add(side);
      return false;
    }
    // What a card plays is no microphone, even if somebody hears himself on it. A virtual output may be all there is
    // between a microphone and a recorder.
    const bool isOutput = kind == NodeKind::sink || kind == NodeKind::duplex;
    if (!isOutput || !origin->device) add(link.outputNode);
    return false;
  }

  const GraphModel& model_;
  std::set<GlobalID> seen_;
  std::vector<GlobalID> open_;
};

}  // namespace

bool recordsAMicrophone(const GraphModel& model, GlobalID recorder) {
  return Search(model, recorder).findsAMicrophone();
}

}  // namespace quillmere::pipewire
