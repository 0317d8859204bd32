// A tap's node as the daemon's library calls it: its parameters, its ports, the buffers that are handed over there.
// [loop], but for the cycle itself.
#pragma once

#include <spa/node/node.h>
#include <spa/param/latency-utils.h>
#include <spa/param/param.h>
#include <spa/utils/dict.h>
#include <spa/utils/hook.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "TapRealtime.h"

struct pw_loop;
struct pw_properties;
struct spa_io_position;

namespace quillmere::pipewire {

class TapNodeInterface {
 public:
  /// Takes `properties` over. What is shared with the audio thread is changed on `audioLoop`, the one that the library
  /// runs this node on; null: that is the caller's own thread. `single` is the linear gain of a single channel into
  /// both sides. `changed` is told when isConfigured(), isStarted() or rate() has changed.
  TapNodeInterface(TapRealtime& realtime, pw_loop* audioLoop, pw_properties* properties, float single,
                   std::function<void()> changed);
  ~TapNodeInterface();
  TapNodeInterface(const TapNodeInterface&) = delete;
  TapNodeInterface& operator=(const TapNodeInterface&) = delete;

  /// What is handed to the library to be exported.
  [[nodiscard]] spa_node* implementation() { return &implementation_; }
  /// The session manager has said what inputs it wants: it knows the node.
  [[nodiscard]] bool isConfigured() const { return isConfigured_; }
  [[nodiscard]] bool isStarted() const { return isStarted_; }
  /// The rate of the graph that it was started in last, in Hz; 0 before.
  [[nodiscard]] double rate() const { return rateHz_; }
  /// Where the graph tells the time of its cycles; null before the first and after the last.
  [[nodiscard]] const spa_io_position* position() const { return position_; }

  /// One output for both sides, or one for each: a port that nobody needs costs time in every cycle.
  void setMono(bool isMono);
  /// All told in one go.
  void setProperties(std::initializer_list<spa_dict_item> items);

 private:
  struct Methods;
  /// What the graph knows of a port.
  struct Port {
    spa_direction direction = SPA_DIRECTION_INPUT;
    std::uint32_t id = 0;
    /// Its number among those of the audio thread.
    std::size_t place = 0;
    std::string channel;
    spa_port_info info{};
    enum Param : std::uint8_t { enumFormat, io, format, buffers, latency, paramCount };
    std::array<spa_param_info, paramCount> params{};
    /// The one in use, as it was given; empty where there is none.
    std::vector<std::byte> chosenFormat;
  };

  void makePorts();
  void addOutputs();
  void removePorts(std::vector<std::unique_ptr<Port>>& ports);
  [[nodiscard]] static std::unique_ptr<Port> makePort(spa_direction direction, std::uint32_t id, std::size_t place,
                                                      std::string channel);
  void tellNode(std::uint64_t mask);
  void tellPort(Port& port, std::uint64_t mask);
  void tellParam(Port& port, Port::Param param);
  [[nodiscard]] Port* port(spa_direction direction, std::uint32_t id) const;
  [[nodiscard]] TapPort* realtimePort(const Port& port);
  int setFormat(Port& port, const spa_pod* format);
  int setLatency(const Port& port, const spa_pod* param);
  void setPosition(const spa_io_position* position);
  void takeRate();
  /// Runs between two cycles; returns when it has run.
  void onAudio(const std::function<void()>& change);

  TapRealtime& realtime_;
  pw_loop* audioLoop_;
  pw_properties* properties_;
  float single_;
  std::function<void()> changed_;
  bool isConfigured_ = false;
  bool isStarted_ = false;
  bool isMono_ = false;
  std::uint32_t rateHz_ = 0;
  const spa_io_position* position_ = nullptr;

  spa_node implementation_{};
  spa_hook_list hooks_{};
  spa_node_info info_{};
  std::array<spa_param_info, 3> params_{};
  std::vector<std::unique_ptr<Port>> inputs_;
  std::vector<std::unique_ptr<Port>> outputs_;
  /// By direction: what lies behind the outputs, and before the inputs.
  std::array<spa_latency_info, 2> latencies_{};
};

}  // namespace quillmere::pipewire
