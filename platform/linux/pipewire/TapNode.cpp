#include "TapNode.h"

#include <pipewire/pipewire.h>
#include <spa/node/io.h>
#include <spa/node/utils.h>
#include <spa/pod/builder.h>
#include <spa/pod/filter.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "ChannelShares.h"
#include "TapParams.h"

namespace quillmere::pipewire {
namespace {

/// By then the work of a cycle is done.
constexpr std::uint64_t mostWorkNanos = 1'000'000;
constexpr std::size_t paramMemory = 2048;
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

// What the library calls, on the loop but for process(). `object` is the TapNode.
struct TapNode::Methods {
  static TapNode& self(void* object) { return *static_cast<TapNode*>(object); }

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
  static int setCallbacks(void* object, const spa_node_callbacks* callbacks, void* data) {
    self(object).callbacks_ = {callbacks, data};
    return 0;
  }
  static int enumParams(void* object, int sequence, std::uint32_t id, std::uint32_t start, std::uint32_t count,
                        const spa_pod* filter) {
    if (id != SPA_PARAM_EnumFormat) return -ENOENT;
    const auto& node = self(object);
    return tellParams(self(object).hooks_, sequence, id, start, count, filter,
                      [&](spa_pod_builder& builder, std::uint32_t place) {
                        return place == 0 ? params::nodeFormat(builder, node.positions_) : nullptr;
                      });
  }
  static int setParam(void* object, std::uint32_t id, std::uint32_t, const spa_pod* param) {
    if (id == SPA_PARAM_PortConfig) {
      if (const auto positions = params::wantedInputs(param)) self(object).configureInputs(*positions);
    }
    // The session manager chooses a format for the node as well; the ports have the only one there is.
    return id == SPA_PARAM_PortConfig || id == SPA_PARAM_Format ? 0 : -ENOENT;
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
        if (node.position_ != nullptr) node.realtime_.setRate(node.position_->clock.rate.denom);
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
    if (port == nullptr) return -EINVAL;
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
    if (port == nullptr) return -EINVAL;
    if (what == SPA_PARAM_Format) return node.setFormat(*port, param);
    if (what == SPA_PARAM_Latency) return node.setLatency(*port, param);
    return -ENOENT;
  }
  static int portUseBuffers(void* object, spa_direction direction, std::uint32_t id, std::uint32_t,
                            spa_buffer** buffers, std::uint32_t count) {
    auto& node = self(object);
    auto* port = node.port(direction, id);
    if (port == nullptr) return -EINVAL;
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

TapNode::TapNode(pw_core* core, const GraphModel& model, const std::string& name,
                 const std::optional<std::string>& output, Logger log, std::function<void()> changed)
    : log_(std::move(log)), changed_(std::move(changed)), id_(SPA_ID_INVALID) {
  auto* dataLoop = pw_context_get_data_loop(pw_core_get_context(core));
  audioLoop_ = pw_data_loop_get_loop(dataLoop);
  if (output) links_.emplace(core, model, *output, log_, changed_);
  // Streams that play on the device have its channels already: alike, none has to be configured anew.
  positions_ = links_ ? channelPositions(links_->channels()) : std::vector<std::uint32_t>{};

  properties_ = pw_properties_new(nullptr, nullptr);
  const auto set = [&](const char* key, const std::string& value) {
    pw_properties_set(properties_, key, value.c_str());
  };
  set(PW_KEY_NODE_NAME, name);
  set(PW_KEY_NODE_DESCRIPTION, "Quillmere");
  set(PW_KEY_MEDIA_NAME, "Quillmere");
  set(PW_KEY_MEDIA_TYPE, "Audio");
  // The session manager may link streams to it, and no mixer shows it.
  set(PW_KEY_MEDIA_CLASS, "Stream/Input/Audio/Internal");
  set(PW_KEY_NODE_VIRTUAL, "true");
  // Where there is no output, applications play on into nothing.
  set(PW_KEY_NODE_WANT_DRIVER, "true");
  // Nothing about us is remembered by the session manager.
  set("state.restore-props", "false");
  set("state.restore-target", "false");

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

  static const auto proxyEvents = [] {
    pw_proxy_events made{};
    made.version = PW_VERSION_PROXY_EVENTS;
    made.bound = [](void* data, std::uint32_t id) {
      static_cast<TapNode*>(data)->id_ = id;
      static_cast<TapNode*>(data)->changed_();
    };
    made.removed = [](void* data) {
      static_cast<TapNode*>(data)->failed_ = true;
      static_cast<TapNode*>(data)->changed_();
    };
    made.error = [](void* data, int, int result, const char* message) {
      static_cast<TapNode*>(data)->log_.standard(logText("a tap's node reports %d: %s", result, message));
    };
    return made;
  }();
  spa_dict_item item{PW_KEY_OBJECT_REGISTER, "false"};
  const spa_dict exported{0, 1, &item};
  proxy_ = static_cast<pw_proxy*>(pw_core_export(core, SPA_TYPE_INTERFACE_Node, &exported, &implementation_, 0));
  if (proxy_ == nullptr) {
    failed_ = true;
    log_.error("a tap's node could not be made");
    return;
  }
  pw_proxy_add_listener(proxy_, &proxyListener_, &proxyEvents, this);
}

TapNode::~TapNode() {
  links_.reset();
  changed_ = [] {};
  if (proxy_ != nullptr) {
    spa_hook_remove(&proxyListener_);
    // From here on it is off the audio thread.
    pw_proxy_destroy(proxy_);
  }
  spa_hook_list_clean(&hooks_);
  pw_properties_free(properties_);
}

bool TapNode::isConnected() const {
  return id_ != SPA_ID_INVALID && isConfigured_ && !failed_ && (!links_ || links_->isComplete());
}

void TapNode::graphChanged() {
  if (id_ == SPA_ID_INVALID || !links_) return;
  if (isConfigured_ && isMono_ != links_->wantMono()) {
    removePorts(outputs_);
    addOutputs();
  }
  links_->update(id_);
}

std::uint64_t TapNode::quietMoment() const {
  if (position_ == nullptr || !isStarted_) return 0;
  // The audio threads write here while we read: a moment that is wrong for once is only a moment like any other.
  const auto& clock = position_->clock;
  const std::uint64_t start = clock.nsec;
  const std::uint64_t length = clock.duration * 1'000'000'000ULL * clock.rate.num / std::max(clock.rate.denom, 1U);
  return start == 0 ? 0 : start + length + std::min(length / 8, mostWorkNanos);
}

void TapNode::setAlwaysProcess(bool isOn) {
  pw_properties_set(properties_, PW_KEY_NODE_ALWAYS_PROCESS, isOn ? "true" : "false");
  info_.props = &properties_->dict;
  tellNode(SPA_NODE_CHANGE_MASK_PROPS);
}

void TapNode::configureInputs(const std::vector<std::uint32_t>& positions) {
  // Always made anew, even where nothing changes: by the ports that come the session manager knows that it was heard.
  // The outputs go too, or it would take them for these.
  removePorts(inputs_);
  removePorts(outputs_);
  onAudio([&] { realtime_.setInputs(channelShares(positions)); });
  for (const auto position : positions) {
    inputs_.push_back(makePort(SPA_DIRECTION_INPUT, static_cast<std::uint32_t>(inputs_.size()), channelName(position)));
    tellPort(*inputs_.back(), wholePort);
  }
  addOutputs();
  isConfigured_ = true;
  changed_();
}

void TapNode::addOutputs() {
  isMono_ = links_ && links_->wantMono();
  if (isMono_) {
    outputs_.push_back(makePort(SPA_DIRECTION_OUTPUT, 0, monoOutput));
  } else {
    outputs_.push_back(makePort(SPA_DIRECTION_OUTPUT, 0, leftOutput));
    outputs_.push_back(makePort(SPA_DIRECTION_OUTPUT, 1, rightOutput));
  }
  for (const auto& port : outputs_) tellPort(*port, wholePort);
}

void TapNode::removePorts(std::vector<std::unique_ptr<Port>>& ports) {
  // Whatever is still asked of them on their way out finds none.
  const auto gone = std::exchange(ports, {});
  for (const auto& port : gone) {
    onAudio([&] { *realtimePort(*port) = {}; });
    spa_node_emit_port_info(&hooks_, port->direction, port->id, nullptr);
  }
}

std::unique_ptr<TapNode::Port> TapNode::makePort(spa_direction direction, std::uint32_t id, std::string channel) const {
  auto made = std::make_unique<Port>();
  made->direction = direction;
  made->id = id;
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

void TapNode::tellNode(std::uint64_t mask) {
  info_.change_mask = mask;
  spa_node_emit_info(&hooks_, &info_);
  info_.change_mask = 0;
}

void TapNode::tellPort(Port& port, std::uint64_t mask) {
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

void TapNode::tellParam(Port& port, Port::Param param) {
  // A flag that turns over: "look again".
  port.params[param].flags ^= SPA_PARAM_INFO_SERIAL;
  tellPort(port, SPA_PORT_CHANGE_MASK_PARAMS);
}

TapNode::Port* TapNode::port(spa_direction direction, std::uint32_t id) const {
  const auto& ports = direction == SPA_DIRECTION_INPUT ? inputs_ : outputs_;
  const auto found = std::find_if(ports.begin(), ports.end(), [id](const auto& port) { return port->id == id; });
  return found == ports.end() ? nullptr : found->get();
}

TapPort* TapNode::realtimePort(const Port& port) {
  if (port.direction == SPA_DIRECTION_INPUT) return realtime_.input(port.id);
  // The daemon wants ports to be numbered without a gap.
  return realtime_.output(isMono_ ? std::size_t{TapRealtime::mono} : port.id);
}

int TapNode::setFormat(Port& port, const spa_pod* format) {
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

int TapNode::setLatency(const Port& port, const spa_pod* param) {
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

void TapNode::setPosition(const spa_io_position* position) {
  position_ = position;
  onAudio([&] { realtime_.setPosition(position); });
}

void TapNode::onAudio(const std::function<void()>& change) {
  pw_loop_invoke(
      audioLoop_,
      [](spa_loop*, bool, std::uint32_t, const void*, std::size_t, void* data) {
        (*static_cast<const std::function<void()>*>(data))();
        return 0;
      },
      0, nullptr, 0, true, const_cast<std::function<void()>*>(&change));
}

}  // namespace quillmere::pipewire
