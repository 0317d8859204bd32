#include "DetourNode.h"

#include <pipewire/filter.h>
#include <pipewire/pipewire.h>
#include <spa/param/audio/raw.h>

#include <algorithm>
#include <set>

#include "LibraryVersion.h"

namespace quillmere::pipewire {
namespace {

using Clock = std::chrono::steady_clock;

/// How often it is looked whether the glide back has arrived.
constexpr Duration closingPeriod = std::chrono::milliseconds(10);
/// Without cycles it never does; nothing is heard then either.
constexpr Clock::duration closingPatience = std::chrono::milliseconds(500);

/// A tap makes its inputs anew when streams of another layout come, and so are the links to them.
constexpr int mostTrials = 5;
constexpr Clock::duration calm = std::chrono::seconds(10);

std::vector<ChannelShare> sharesOf(const std::vector<std::string>& channels) {
  std::vector<std::uint32_t> positions;
  positions.reserve(channels.size());
  for (const auto& channel : channels) positions.push_back(channelPosition(channel));
  return channelShares(positions, singleChannelMix(libraryVersion(pw_get_library_version())).input);
}

}  // namespace

struct DetourNode::Callbacks {
  static void stateChanged(void* data, pw_filter_state, pw_filter_state state, const char* error) {
    auto& self = *static_cast<DetourNode*>(data);
    if (state == PW_FILTER_STATE_ERROR && !self.hasFailed_) {
      self.hasFailed_ = true;
      self.log_.error(logText("a JACK client's way to its tap reports: %s", error != nullptr ? error : "no reason"));
    }
    self.changed_();
  }
  static void process(void* data, spa_io_position* position) {
    if (position != nullptr) static_cast<DetourNode*>(data)->process(*position);
  }
};

DetourNode::DetourNode(Loop& loop, pw_core* core, const std::string& name, const std::vector<std::string>& channels,
                       Logger log, std::function<void()> changed)
    : core_(core),
      log_(std::move(log)),
      changed_(std::move(changed)),
      mix_(sharesOf(channels)),
      thread_(pw_core_get_context(core)),
      closing_(loop, [this] {
        if (!isClosed()) closing_.arm(closingPeriod);
        changed_();
      }) {
  static const auto events = [] {
    pw_filter_events made{};
    made.version = PW_VERSION_FILTER_EVENTS;
    made.state_changed = &Callbacks::stateChanged;
    made.process = &Callbacks::process;
    return made;
  }();
  auto* properties =
      pw_properties_new(PW_KEY_NODE_NAME, name.c_str(), PW_KEY_NODE_DESCRIPTION, "Quillmere", PW_KEY_MEDIA_NAME,
                        "Quillmere", PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Filter", PW_KEY_MEDIA_ROLE,
                        "DSP", PW_KEY_NODE_VIRTUAL, "true", PW_KEY_NODE_PASSIVE, "true", nullptr);
  filter_ = pw_filter_new(core, name.c_str(), properties);
  if (filter_ == nullptr) {
    hasFailed_ = true;
    log_.error("a JACK client's way to its tap could not be made");
    return;
  }
  pw_filter_add_listener(filter_, &listener_, &events, this);

  const auto addPort = [&](pw_direction direction, const std::string& portName, const char* channel) {
    auto* port =
        pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME, portName.c_str(), nullptr);
    if (channel != nullptr) pw_properties_set(port, PW_KEY_AUDIO_CHANNEL, channel);
    return pw_filter_add_port(filter_, direction, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void*), port, nullptr, 0);
  };
  for (std::size_t place = 0; place < channels.size(); ++place) {
    const auto number = std::to_string(place + 1);
    inputs_.push_back(addPort(PW_DIRECTION_INPUT, "input_" + number, nullptr));
    inverses_.push_back(addPort(PW_DIRECTION_OUTPUT, "inverse_" + number, nullptr));
  }
  left_ = addPort(PW_DIRECTION_OUTPUT, "tap_FL", leftChannel);
  right_ = addPort(PW_DIRECTION_OUTPUT, "tap_FR", rightChannel);
  inputBuffers_.resize(inputs_.size());
  inverseBuffers_.resize(inverses_.size());
  if (const int result = pw_filter_connect(filter_, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0); result < 0) {
    hasFailed_ = true;
    log_.error(logText("a JACK client's way to its tap could not be connected (%d)", result));
  }
}

DetourNode::~DetourNode() {
  links_.clear();
  if (filter_ == nullptr) return;
  spa_hook_remove(&listener_);
  // From here on it is off the audio thread.
  pw_filter_destroy(filter_);
}

std::optional<GlobalID> DetourNode::node() const {
  const auto id = filter_ != nullptr ? pw_filter_get_node_id(filter_) : SPA_ID_INVALID;
  return id == SPA_ID_INVALID ? std::nullopt : std::optional<GlobalID>(id);
}

void DetourNode::link(const std::vector<DetourLink>& wanted) {
  for (auto& [ends, made] : links_) made.isWanted = false;
  for (const auto& each : wanted) {
    const Ends ends{each.output.serial, each.input.serial};
    const auto found = links_.find(ends);
    if (found == links_.end()) {
      auto& made = links_[ends];
      made.part = each.part;
      made.isWanted = true;
      made.link = make(each);
    } else {
      found->second.isWanted = true;
      if (!found->second.link->isGone()) continue;
      if (!mayTryAgain()) {
        hasFailed_ = true;
        return;
      }
      found->second.link = make(each);
    }
  }
  const bool isComplete = isLinked();
  std::erase_if(links_, [&](const auto& entry) {
    const auto& made = entry.second;
    return !made.isWanted && (isComplete || made.part == DetourLink::Part::source || made.link->isGone());
  });
}

bool DetourNode::isLinked() const {
  return !links_.empty() && std::all_of(links_.begin(), links_.end(), [](const auto& entry) {
    return !entry.second.isWanted || entry.second.link->isStanding();
  });
}

void DetourNode::setOpen(bool isOpen) {
  if (isOpen_ == isOpen) return;
  isOpen_ = isOpen;
  mix_.setOpen(isOpen);
  if (isOpen) {
    closing_.disarm();
  } else {
    closingSince_ = Clock::now();
    closing_.arm(closingPeriod);
  }
}

bool DetourNode::isClosed() const {
  return !isOpen_ && (mix_.isClosed() || Clock::now() - closingSince_ > closingPatience);
}

std::unique_ptr<OwnLink> DetourNode::make(const DetourLink& link) {
  return std::make_unique<OwnLink>(core_, link.output, link.input, log_, "a JACK client can't be linked to its tap",
                                   changed_);
}

bool DetourNode::mayTryAgain() {
  const auto now = Clock::now();
  if (now - lastTrial_ > calm) trials_ = 0;
  lastTrial_ = now;
  return ++trials_ <= mostTrials;
}

void DetourNode::process(const spa_io_position& position) {
  const auto frames = static_cast<std::uint32_t>(position.clock.duration);
  const auto bufferOf = [frames](void* port) { return static_cast<float*>(pw_filter_get_dsp_buffer(port, frames)); };
  for (std::size_t place = 0; place < inputs_.size(); ++place) {
    inputBuffers_[place] = bufferOf(inputs_[place]);
    inverseBuffers_[place] = bufferOf(inverses_[place]);
  }
  const double rate = position.clock.rate.denom;
  mix_.process(
      {inputBuffers_, inverseBuffers_, bufferOf(left_), bufferOf(right_), frames, rate >= 8000.0 ? rate : 48000.0});
}

}  // namespace quillmere::pipewire
