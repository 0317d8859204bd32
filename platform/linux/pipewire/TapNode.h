// The node behind a tap: applications are moved to its inputs, its outputs are linked to the device they play on.
// All calls with the loop locked, or on the loop.
#pragma once

#include <spa/node/node.h>
#include <spa/param/latency-utils.h>
#include <spa/param/param.h>
#include <spa/support/loop.h>
#include <spa/utils/hook.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TapLinks.h"
#include "TapPath.h"
#include "TapRealtime.h"
#include "runtime/Logger.h"

struct pw_core;
struct pw_loop;
struct pw_properties;
struct pw_proxy;
struct spa_io_position;

namespace quillmere::pipewire {

/// Hands buffers of single channels on as the graph has them: the library's converters, which would stand on both sides
/// of a stream, have nothing to do here.
class TapNode final : public TapPath {
 public:
  /// `name` is unique; `output` is the serial of the device to play on, for good: when that goes, the node has failed.
  /// Absent: it plays nowhere. `changed` is told on the loop when isConnected() or hasFailed() may have changed.
  TapNode(pw_core* core, const GraphModel& model, const std::string& name, const std::optional<std::string>& output,
          Logger log, std::function<void()> changed);
  ~TapNode() override;
  TapNode(const TapNode&) = delete;
  TapNode& operator=(const TapNode&) = delete;

  [[nodiscard]] bool isConnected() const override;
  [[nodiscard]] bool hasFailed() const override { return failed_ || (links_ && links_->haveFailed()); }
  [[nodiscard]] std::uint32_t node() const override { return id_; }
  void graphChanged() override;
  void startPlain(const IOBlock* block) override { realtime_.startPlain(block); }
  void startFrom(const IOBlock* block, float gain) override { realtime_.startFrom(block, gain); }
  void startFromRelease(const IOBlock* block) override { realtime_.startFromRelease(block); }
  void stop(float appliedGain) override { realtime_.stop(appliedGain); }
  void hold() override { realtime_.hold(); }
  [[nodiscard]] std::uint64_t quietMoment() const override;
  void wakeUp() override { setAlwaysProcess(true); }
  void calmDown() override { setAlwaysProcess(false); }
  [[nodiscard]] std::uint64_t cycles() const override { return realtime_.cycles(); }
  [[nodiscard]] bool isAtUnity() const override { return realtime_.isAtUnity(); }
  [[nodiscard]] float releaseGain() const override { return realtime_.releaseGain(); }

 private:
  struct Methods;
  /// What the graph knows of a port.
  struct Port {
    spa_direction direction = SPA_DIRECTION_INPUT;
    std::uint32_t id = 0;
    std::string channel;
    spa_port_info info{};
    enum Param : std::uint8_t { enumFormat, io, format, buffers, latency, paramCount };
    std::array<spa_param_info, paramCount> params{};
    /// The one in use, as it was given; empty where there is none.
    std::vector<std::byte> chosenFormat;
  };

  void setAlwaysProcess(bool isOn);
  void configureInputs(const std::vector<std::uint32_t>& positions);
  void addOutputs();
  void removePorts(std::vector<std::unique_ptr<Port>>& ports);
  [[nodiscard]] std::unique_ptr<Port> makePort(spa_direction direction, std::uint32_t id, std::string channel) const;
  void tellNode(std::uint64_t mask);
  void tellPort(Port& port, std::uint64_t mask);
  void tellParam(Port& port, Port::Param param);
  [[nodiscard]] Port* port(spa_direction direction, std::uint32_t id) const;
  [[nodiscard]] TapPort* realtimePort(const Port& port);
  int setFormat(Port& port, const spa_pod* format);
  int setLatency(const Port& port, const spa_pod* param);
  void setPosition(const spa_io_position* position);
  /// Runs between two cycles; returns when it has run.
  void onAudio(const std::function<void()>& change);

  Logger log_;
  std::function<void()> changed_;
  pw_loop* audioLoop_ = nullptr;
  pw_properties* properties_ = nullptr;
  pw_proxy* proxy_ = nullptr;
  spa_hook proxyListener_{};
  std::uint32_t id_;
  bool failed_ = false;
  /// The session manager has said what inputs it wants: it knows the node.
  bool isConfigured_ = false;
  bool isStarted_ = false;
  TapRealtime realtime_;
  /// Where the graph tells the time of its cycles; null before the first and after the last.
  const spa_io_position* position_ = nullptr;

  spa_node implementation_{};
  spa_hook_list hooks_{};
  spa_callbacks callbacks_{};
  spa_node_info info_{};
  std::array<spa_param_info, 3> params_{};
  std::vector<std::unique_ptr<Port>> inputs_;
  std::vector<std::unique_ptr<Port>> outputs_;
  /// A port that nobody needs costs time in every cycle: the one output of both sides, or one for each.
  bool isMono_ = false;
  /// Channels that it asks for.
  std::vector<std::uint32_t> positions_;
  /// By direction: what lies behind the outputs, and before the inputs.
  std::array<spa_latency_info, 2> latencies_{};
  std::optional<TapLinks> links_;
};

}  // namespace quillmere::pipewire
