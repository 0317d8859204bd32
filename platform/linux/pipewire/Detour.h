// A way from a client that links itself to a tap, beside the links that it has made. [loop]
#pragma once

#include <optional>
#include <vector>

#include "GraphModel.h"

namespace quillmere::pipewire {

struct DetourLink {
  enum class Part {
    /// From the client's port to the detour.
    source,
    /// From the detour to the port of the output that the client is linked to: cancels what arrives there.
    inverse,
    /// From the detour to the tap.
    tap
  };
  Part part = Part::source;
  PortRecord output;
  PortRecord input;
};

class Detour {
 public:
  virtual ~Detour() = default;

  /// Absent until the daemon knows it.
  [[nodiscard]] virtual std::optional<GlobalID> node() const = 0;
  /// Could not be made, or a link was refused or taken away.
  [[nodiscard]] virtual bool hasFailed() const = 0;
  /// Makes what is missing of these. A source that isn't among them goes at once: the client doesn't send its sound
  /// there any more, and the inverse would be heard alone. Other links go once all of these stand.
  virtual void link(const std::vector<DetourLink>& wanted) = 0;
  /// All that was asked for stands.
  [[nodiscard]] virtual bool isLinked() const = 0;
  /// Begins to send the sound the other way, or to leave it where it goes by itself, within a few milliseconds.
  virtual void setOpen(bool isOpen) = 0;
  /// It is all back where it goes by itself.
  [[nodiscard]] virtual bool isClosed() const = 0;
};

// The ports of a detour: an input and an output for each port of the device, in the device's order, and behind them
// left and right for the tap.
inline constexpr auto leftChannel = "FL";
inline constexpr auto rightChannel = "FR";
inline constexpr std::size_t tapOutputs = 2;

/// The ports of a device that can be played on, in its own order.
[[nodiscard]] std::vector<PortRecord> playedPorts(const GraphModel& model, GlobalID device);

/// What has to be linked so that everything that these links of clients carry to the device goes to the tap. Empty
/// while the ports of one of them aren't known.
[[nodiscard]] std::vector<DetourLink> detourLinks(const GraphModel& model, const std::vector<LinkRecord>& clientLinks,
                                                  GlobalID device, GlobalID detour, GlobalID tap);

}  // namespace quillmere::pipewire
