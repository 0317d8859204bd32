// The links from a tap's node to the output that it plays on: ours to make, and gone with us.
// [loop]
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "GraphModel.h"
#include "OwnLink.h"
#include "runtime/Logger.h"

struct pw_core;

namespace quillmere::pipewire {

/// Global ids of an output port and of the input port it is to be linked to.
using PortPair = std::pair<GlobalID, GlobalID>;

// Channels of a tap's outputs.
inline constexpr auto leftOutput = "FL";
inline constexpr auto rightOutput = "FR";
inline constexpr auto monoOutput = "MONO";

/// What of a tap's outputs goes where: left and right to the device's front, whatever else it has stays silent; a
/// device of one channel gets both in one; one without front channels gets its first two. Empty while either side's
/// ports are not known.
[[nodiscard]] std::vector<PortPair> outputLinks(std::span<const PortRecord> tap, std::span<const PortRecord> device);

class TapLinks {
 public:
  /// `serial` is the output's. `changed` is told on the loop when update() has something to do.
  TapLinks(pw_core* core, const GraphModel& model, std::string serial, Logger log, std::function<void()> changed);
  ~TapLinks();
  TapLinks(const TapLinks&) = delete;
  TapLinks& operator=(const TapLinks&) = delete;

  /// Makes what is missing, once the graph knows both ends. `node` is the tap's.
  void update(GlobalID node);
  /// The device has a single channel: the tap is to have an output for that.
  [[nodiscard]] bool wantMono() const;
  /// Every link stands, with its format and its buffers settled.
  [[nodiscard]] bool isComplete() const;
  /// The output has gone, or somebody took a link away.
  [[nodiscard]] bool haveFailed() const { return hasFailed_; }

 private:
  /// Serials of a link's two ports: ids are given again at once.
  using Ends = std::pair<std::string, std::string>;
  [[nodiscard]] std::map<Ends, PortPair> wantedLinks(GlobalID node, GlobalID device) const;

  pw_core* core_;
  const GraphModel& model_;
  std::string serial_;
  Logger log_;
  std::function<void()> changed_;
  std::map<Ends, std::unique_ptr<OwnLink>> links_;
  bool hasFailed_ = false;
};

}  // namespace quillmere::pipewire
