#include "TapNodeInterface.h"

#include <pipewire/pipewire.h>
#include <spa/node/io.h>
#include <spa/node/utils.h>
#include <spa/param/audio/raw.h>
#include <spa/pod/builder.h>
#include <spa/pod/filter.h>

#include <algorithm>
#include <cerrno>
#include <thread>
#include <utility>

#include "ChannelShares.h"
#include "TapLinks.h"
#include "TapParams.h"

namespace quillmere::pipewire {
namespace {

constexpr std::size_t paramMemory = 2048;
/// One input for each channel of the usual layouts, so that streams of different ones are linked side by side: each to
/// the inputs of its own channels. Left and right come first, since channels without a position are given out in order.
constexpr std::array<std::uint32_t, 9> inputPositions{
    SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR, SPA_AUDIO_CHANNEL_MONO, SPA_AUDIO_CHANNEL_FC, SPA_AUDIO_CHANNEL_LFE,
    SPA_AUDIO_CHANNEL_RL, SPA_AUDIO_CHANNEL_RR, SPA_AUDIO_CHANNEL_SL,   SPA_AUDIO_CHANNEL_SR};
constexpr std::uint64_t wholePort =
    SPA_PORT_CHANGE_MASK_FLAGS | SPA_PORT_CHANGE_MASK_PROPS | SPA_PORT_CHANGE_MASK_PARAMS;

constexpr spa_param_info paramInfo(std::uint32_t id, std::uint32_t flags) {
  spa_param_info info{};
  info.id = id;
  info.flags = flags;
  return info;
}

/// Tells the listeners those of a list of parameters that pass their filter. `build` gives the one of a place in the
/// list, null beyond its end.
template <typename Build>
int tellParams(spa_hook_list& hooks, int sequence, std::uint32_t id, std::uint32_t start, std::uint32_t count,
               const spa_pod* filter, Build build) {
  spa_result_node_params result{};
  result.id = id;
  std::uint32_t told = 0;
  for (std::uint32_t place = start; told < count; ++place) {
    std::array<std::uint8_t, paramMemory> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    const spa_pod* param = build(builder, place);
    if (param == nullptr) break;
    std::array<std::uint8_t, paramMemory> filteredMemory{};
    spa_pod_builder filtered{};
    spa_pod_builder_init(&filtered, filteredMemory.data(), filteredMemory.size());
    result.index = place;
    result.next = place + 1;
    if (spa_pod_filter(&filtered, &result.param, param, filter) < 0) continue;
    spa_node_emit_result(&hooks, sequence, 0, SPA_RESULT_TYPE_NODE_PARAMS, &result);
    ++told;
  }
  return 0;
}

}  // namespace

// What the library calls, on the loop but for process(). `object` is the interface.
struct TapNodeInterface::Methods {
  static TapNodeInterface& self(void* object) { return *static_cast<TapNodeInterface*>(object); }

  static int addListener(void* object, spa_hook* listener, const spa_node_events* events, void* data) {
    auto& node = self(object);
    spa_hook_list others;
    spa_hook_list_isolate(&node.hooks_, &others, listener, events, data);
    node.tellNode(SPA_NODE_CHANGE_MASK_FLAGS | SPA_NODE_CHANGE_MASK_PROPS | SPA_NODE_CHANGE_MASK_PARAMS);
    for (const auto* ports : {&node.inputs_, &node.outputs_}) {
      for (const auto& port : *ports) {
        node.tellPort(*port, wholePort);
      }
    }
    spa_hook_list_join(&node.hooks_, &others);
    return 0;
  }
  /// It never asks to be run: the graph does that.
  static int setCallbacks(void*, const spa_node_callbacks*, void*) { return 0; }
  static int enumParams(void* object, int sequence, std::uint32_t id, std::uint32_t start, std::uint32_t count,
                        const spa_pod* filter) {
    if (id != SPA_PARAM_EnumFormat) return -ENOENT;
    return tellParams(self(object).hooks_, sequence, id, start, count, filter,
                      [](spa_pod_builder& builder, std::uint32_t place) {
                        return place == 0 ? params::stereoFormat(builder, 48000) : nullptr;
                      });
  }
  static int setParam(void* object, std::uint32_t id, std::uint32_t, const spa_pod* param) {
    if (id == SPA_PARAM_PortConfig && params::configuresInputs(param)) self(object).makePorts();
    // Of all else nothing is taken: the session manager's format for the node, since the ports have the only one there
    // is, and whatever other programs set. A refusal would count as a fault of the node.
    return 0;
  }
  static int setIO(void* object, std::uint32_t id, void* area, std::size_t size) {
    if (id != SPA_IO_Position) return 0;
    const bool isThere = area != nullptr && size >= sizeof(spa_io_position);
    self(object).setPosition(isThere ? static_cast<const spa_io_position*>(area) : nullptr);
    return 0;
  }
  static int sendCommand(void* object, const spa_command* command) {
    auto& node = self(object);
    switch (SPA_NODE_COMMAND_ID(command)) {
      case SPA_NODE_COMMAND_Start:
        node.isStarted_ = true;
        node.takeRate();
        break;
      case SPA_NODE_COMMAND_Suspend:
      case SPA_NODE_COMMAND_Pause:
        node.isStarted_ = false;
        break;
      default:
        return 0;
    }
    node.changed_();
    return 0;
  }
  static int portSetIO(void* object, spa_direction direction, std::uint32_t id, std::uint32_t what, void* area,
                       std::size_t size) {
    auto& node = self(object);
    auto* port = node.port(direction, id);
    // One that is on its way out is still asked to give up what it had.
    if (port == nullptr) return area == nullptr ? 0 : -EINVAL;
    if (what != SPA_IO_Buffers) return -ENOENT;
    auto* io = area != nullptr && size >= sizeof(spa_io_buffers) ? static_cast<spa_io_buffers*>(area) : nullptr;
    node.onAudio([&] { node.realtimePort(*port)->io = io; });
    return 0;
  }
  static int portEnumParams(void* object, int sequence, spa_direction direction, std::uint32_t id, std::uint32_t what,
                            std::uint32_t start, std::uint32_t count, const spa_pod* filter) {
    auto& node = self(object);
    const auto* port = node.port(direction, id);
    if (port == nullptr) return -EINVAL;
    const auto tell = [&](auto build) { return tellParams(node.hooks_, sequence, what, start, count, filter, build); };
    const auto tellOne = [&](const spa_pod* (*build)(spa_pod_builder&)) {
      return tell(
          [build](spa_pod_builder& builder, std::uint32_t place) { return place == 0 ? build(builder) : nullptr; });
    };
    switch (what) {
      case SPA_PARAM_EnumFormat:
        return tellOne(&params::portFormat);
      case SPA_PARAM_IO:
        return tellOne(&params::portIO);
      case SPA_PARAM_Buffers:
        return tellOne(&params::portBuffers);
      case SPA_PARAM_Format:
        return tell([port](spa_pod_builder&, std::uint32_t place) {
          return place > 0 || port->chosenFormat.empty() ? nullptr
                                                         : reinterpret_cast<const spa_pod*>(port->chosenFormat.data());
        });
      case SPA_PARAM_Latency:
        return tell([&node](spa_pod_builder& builder, std::uint32_t place) {
          return place < node.latencies_.size() ? params::latency(builder, node.latencies_[place]) : nullptr;
        });
      default:
        return -ENOENT;
    }
  }
  static int portSetParam(void* object, spa_direction direction, std::uint32_t id, std::uint32_t what, std::uint32_t,
                          const spa_pod* param) {
    auto& node = self(object);
    auto* port = node.port(direction, id);
    if (port == nullptr) return param == nullptr ? 0 : -EINVAL;
    if (what == SPA_PARAM_Format) return node.setFormat(*port, param);
    if (what == SPA_PARAM_Latency) return node.setLatency(*port, param);
    return -ENOENT;
  }
  static int portUseBuffers(void* object, spa_direction direction, std::uint32_t id, std::uint32_t,
                            spa_buffer** buffers, std::uint32_t count) {
    auto& node = self(object);
    auto* port = node.port(direction, id);
    if (port == nullptr) return count == 0 ? 0 : -EINVAL;
    if (count > TapPort::mostBuffers) return -ENOSPC;
    if (count > 0 && port->chosenFormat.empty()) return -EIO;
    for (std::uint32_t place = 0; place < count; ++place) {
      if (buffers[place]->n_datas < 1 || buffers[place]->datas[0].data == nullptr) return -EINVAL;
    }
    node.onAudio([&] { TapRealtime::setBuffers(*node.realtimePort(*port), std::span(buffers, count)); });
    return 0;
  }
  static int portReuseBuffer(void*, std::uint32_t, std::uint32_t) { return 0; }
  static int process(void* object) { return self(object).realtime_.cycle(); }
};

TapNodeInterface::TapNodeInterface(TapRealtime& realtime, pw_loop* audioLoop, pw_properties* properties, float single,
                                   std::function<void()> changed)
    : realtime_(realtime),
      audioLoop_(audioLoop),
      properties_(properties),
      single_(single),
      changed_(std::move(changed)) {
  for (const auto direction : {SPA_DIRECTION_INPUT, SPA_DIRECTION_OUTPUT}) {
    latencies_[direction].direction = direction;
  }
  params_ = {paramInfo(SPA_PARAM_EnumFormat, SPA_PARAM_INFO_READ), paramInfo(SPA_PARAM_Format, SPA_PARAM_INFO_WRITE),
             paramInfo(SPA_PARAM_PortConfig, SPA_PARAM_INFO_WRITE)};
  info_.max_input_ports = mostChannels;
  info_.max_output_ports = TapRealtime::outputCount;
  info_.flags = SPA_NODE_FLAG_RT | SPA_NODE_FLAG_IN_DYNAMIC_PORTS | SPA_NODE_FLAG_OUT_DYNAMIC_PORTS;
  info_.props = &properties_->dict;
  info_.params = params_.data();
  info_.n_params = static_cast<std::uint32_t>(params_.size());

  static const auto methods = [] {
    spa_node_methods made{};
    made.version = SPA_VERSION_NODE_METHODS;
    made.add_listener = &Methods::addListener;
    made.set_callbacks = &Methods::setCallbacks;
    made.enum_params = &Methods::enumParams;
    made.set_param = &Methods::setParam;
    made.set_io = &Methods::setIO;
    made.send_command = &Methods::sendCommand;
    made.port_enum_params = &Methods::portEnumParams;
    made.port_set_param = &Methods::portSetParam;
    made.port_use_buffers = &Methods::portUseBuffers;
    made.port_set_io = &Methods::portSetIO;
    made.port_reuse_buffer = &Methods::portReuseBuffer;
    made.process = &Methods::process;
    return made;
  }();
  spa_hook_list_init(&hooks_);
  implementation_.iface.type = SPA_TYPE_INTERFACE_Node;
  implementation_.iface.version = SPA_VERSION_NODE;
  implementation_.iface.cb = {&methods, this};
}

TapNodeInterface::~TapNodeInterface() {
  spa_hook_list_clean(&hooks_);
  pw_properties_free(properties_);
}

void TapNodeInterface::setMono(bool isMono) {
  if (isMono == std::exchange(isMono_, isMono) || !isConfigured_) return;
  removePorts(outputs_);
  addOutputs();
}

void TapNodeInterface::setProperties(std::initializer_list<spa_dict_item> items) {
  for (const auto& item : items) pw_properties_set(properties_, item.key, item.value);
  info_.props = &properties_->dict;
  tellNode(SPA_NODE_CHANGE_MASK_PROPS);
}

void TapNodeInterface::makePorts() {
  // Always made anew, even where nothing changes: by the ports that come the session manager knows that it was heard.
  // The outputs go too, or it would take them for these.
  removePorts(inputs_);
  removePorts(outputs_);
  onAudio([&] { realtime_.setInputs(channelShares(inputPositions, single_)); });
  for (const auto position : inputPositions) {
    const auto place = inputs_.size();
    inputs_.push_back(makePort(SPA_DIRECTION_INPUT, static_cast<std::uint32_t>(place), place, channelName(position)));
    tellPort(*inputs_.back(), wholePort);
  }
  addOutputs();
  isConfigured_ = true;
  changed_();
}

void TapNodeInterface::addOutputs() {
  if (isMono_) {
    // The daemon wants ports to be numbered without a gap.
    outputs_.push_back(makePort(SPA_DIRECTION_OUTPUT, 0, TapRealtime::mono, monoOutput));
  } else {
    outputs_.push_back(makePort(SPA_DIRECTION_OUTPUT, 0, TapRealtime::left, leftOutput));
    outputs_.push_back(makePort(SPA_DIRECTION_OUTPUT, 1, TapRealtime::right, rightOutput));
  }
  for (const auto& port : outputs_) tellPort(*port, wholePort);
}

void TapNodeInterface::removePorts(std::vector<std::unique_ptr<Port>>& ports) {
  // Whatever is still asked of them on their way out finds none.
  const auto gone = std::exchange(ports, {});
  for (const auto& port : gone) {
    onAudio([&] { *realtimePort(*port) = {}; });
    spa_node_emit_port_info(&hooks_, port->direction, port->id, nullptr);
  }
}

std::unique_ptr<TapNodeInterface::Port> TapNodeInterface::makePort(spa_direction direction, std::uint32_t id,
                                                                   std::size_t place, std::string channel) {
  auto made = std::make_unique<Port>();
  made->direction = direction;
  made->id = id;
  made->place = place;
  made->channel = std::move(channel);
  made->params[Port::enumFormat] = paramInfo(SPA_PARAM_EnumFormat, SPA_PARAM_INFO_READ);
  made->params[Port::io] = paramInfo(SPA_PARAM_IO, SPA_PARAM_INFO_READ);
  made->params[Port::format] = paramInfo(SPA_PARAM_Format, SPA_PARAM_INFO_WRITE);
  made->params[Port::buffers] = paramInfo(SPA_PARAM_Buffers, SPA_PARAM_INFO_READ);
  made->params[Port::latency] = paramInfo(SPA_PARAM_Latency, SPA_PARAM_INFO_READWRITE);
  made->info.params = made->params.data();
  made->info.n_params = Port::paramCount;
  return made;
}

void TapNodeInterface::tellNode(std::uint64_t mask) {
  info_.change_mask = mask;
  spa_node_emit_info(&hooks_, &info_);
  info_.change_mask = 0;
}

void TapNodeInterface::tellPort(Port& port, std::uint64_t mask) {
  const auto name = std::string(port.direction == SPA_DIRECTION_INPUT ? "input_" : "output_") + port.channel;
  const std::array<spa_dict_item, 3> items{{{PW_KEY_FORMAT_DSP, "32 bit float mono audio"},
                                            {PW_KEY_PORT_NAME, name.c_str()},
                                            {PW_KEY_AUDIO_CHANNEL, port.channel.c_str()}}};
  const spa_dict properties{0, static_cast<std::uint32_t>(items.size()), items.data()};
  port.info.props = &properties;
  port.info.change_mask = mask;
  spa_node_emit_port_info(&hooks_, port.direction, port.id, &port.info);
  port.info.change_mask = 0;
  port.info.props = nullptr;
}

void TapNodeInterface::tellParam(Port& port, Port::Param param) {
  // A flag that turns over: "look again".
  port.params[param].flags ^= SPA_PARAM_INFO_SERIAL;
  tellPort(port, SPA_PORT_CHANGE_MASK_PARAMS);
}

TapNodeInterface::Port* TapNodeInterface::port(spa_direction direction, std::uint32_t id) const {
  const auto& ports = direction == SPA_DIRECTION_INPUT ? inputs_ : outputs_;
  const auto found = std::find_if(ports.begin(), ports.end(), [id](const auto& port) { return port->id == id; });
  return found == ports.end() ? nullptr : found->get();
}

TapPort* TapNodeInterface::realtimePort(const Port& port) {
  return port.direction == SPA_DIRECTION_INPUT ? realtime_.input(port.place) : realtime_.output(port.place);
}

int TapNodeInterface::setFormat(Port& port, const spa_pod* format) {
  if (format != nullptr && !params::isPortFormat(format)) return -EINVAL;
  onAudio([&] { TapRealtime::setBuffers(*realtimePort(port), {}); });
  port.chosenFormat.clear();
  if (format != nullptr) {
    const auto* bytes = reinterpret_cast<const std::byte*>(format);
    port.chosenFormat.assign(bytes, bytes + SPA_POD_SIZE(format));
  }
  auto& flags = port.params[Port::format].flags;
  flags = (flags & SPA_PARAM_INFO_SERIAL) | (format != nullptr ? SPA_PARAM_INFO_READWRITE : SPA_PARAM_INFO_WRITE);
  tellParam(port, Port::format);
  return 0;
}

int TapNodeInterface::setLatency(const Port& port, const spa_pod* param) {
  spa_latency_info told{};
  if (param == nullptr || spa_latency_parse(param, &told) < 0) return 0;
  // A port is told what lies on its own far side; players on the one side learn it from the ports of the other.
  if (told.direction == port.direction || spa_latency_info_compare(&told, &latencies_[told.direction]) == 0) return 0;
  latencies_[told.direction] = told;
  for (const auto& other : told.direction == SPA_DIRECTION_INPUT ? inputs_ : outputs_) {
    tellParam(*other, Port::latency);
  }
  return 0;
}

void TapNodeInterface::takeRate() {
  if (position_ == nullptr || position_->clock.rate.denom == 0) return;
  if (std::exchange(rateHz_, position_->clock.rate.denom) == rateHz_) return;
  realtime_.setRate(rateHz_);
  changed_();
}

void TapNodeInterface::setPosition(const spa_io_position* position) {
  position_ = position;
  takeRate();
  onAudio([&] { realtime_.setPosition(position); });
}

void TapNodeInterface::onAudio(const std::function<void()>& change) {
  if (audioLoop_ == nullptr) {
    change();
    return;
  }
  const auto run = [](spa_loop*, bool, std::uint32_t, const void*, std::size_t, void* data) {
    (*static_cast<const std::function<void()>*>(data))();
    return 0;
  };
  // Refused only while that loop's queue is full, which it empties in its next turn.
  while (pw_loop_invoke(audioLoop_, run, 0, nullptr, 0, true, const_cast<std::function<void()>*>(&change)) == -EPIPE) {
    std::this_thread::yield();
  }
}

}  // namespace quillmere::pipewire
