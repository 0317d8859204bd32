#include "Stragglers.h"

#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <utility>

namespace quillmere::pipewire {
namespace {

/// A session manager that configures every node does so within a few milliseconds.
constexpr Duration readyPatience = std::chrono::milliseconds(500);

}  // namespace

struct Stragglers::Straggler {
  pw_stream* stream = nullptr;

  ~Straggler() {
    if (stream != nullptr) pw_stream_destroy(stream);
  }
};

Stragglers::Stragglers(Loop& loop, const GraphModel& model, std::function<pw_core*(std::size_t)> core, Logger log,
                       std::function<void()> changed)
    : model_(model),
      core_(std::move(core)),
      log_(std::move(log)),
      changed_(std::move(changed)),
      patience_(loop, [this] {
        isPatienceOver_ = true;
        changed_();
      }) {}

Stragglers::~Stragglers() = default;

void Stragglers::stand(bool isWanted) {
  for (std::size_t place = 0; place < count; ++place) {
    auto& straggler = stragglers_[place];
    if (!isWanted) {
      straggler.reset();
    } else if (auto* core = straggler ? nullptr : core_(place); core != nullptr) {
      straggler = make(core);
      isPatienceOver_ = false;
      patience_.arm(readyPatience);
    }
  }
  if (!isWanted) patience_.disarm();
}

bool Stragglers::areReady() const {
  // It is given its ports when the session manager has configured it.
  return isPatienceOver_ || std::all_of(stragglers_.begin(), stragglers_.end(), [&](const auto& straggler) {
           const auto id =
               straggler && straggler->stream != nullptr ? pw_stream_get_node_id(straggler->stream) : SPA_ID_INVALID;
           return id != SPA_ID_INVALID && !model_.portsOf(id).empty();
         });
}

std::unique_ptr<Stragglers::Straggler> Stragglers::make(pw_core* core) {
  const auto name =
      std::string(ourNodePrefix) + "straggler-" + std::to_string(getpid()) + "-" + std::to_string(++made_);
  auto* properties = pw_properties_new(
      PW_KEY_NODE_NAME, name.c_str(), PW_KEY_NODE_DESCRIPTION, "Quillmere", PW_KEY_MEDIA_NAME, "Quillmere",
      PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CLASS, "Stream/Output/Audio/Internal", PW_KEY_NODE_VIRTUAL, "true",
      PW_KEY_NODE_PASSIVE, "true", "state.restore-props", "false", "state.restore-target", "false", nullptr);
  auto straggler = std::make_unique<Straggler>();
  straggler->stream = pw_stream_new(core, name.c_str(), properties);
  spa_audio_info_raw info{};
  info.format = SPA_AUDIO_FORMAT_F32P;
  info.channels = 1;
  info.position[0] = SPA_AUDIO_CHANNEL_MONO;
  std::array<std::uint8_t, 1024> memory{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, memory.data(), memory.size());
  std::array<const spa_pod*, 1> params{spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info)};
  // Nobody links it: it doesn't ask to be.
  const int result = straggler->stream == nullptr
                         ? -1
                         : pw_stream_connect(straggler->stream, PW_DIRECTION_OUTPUT, PW_ID_ANY, PW_STREAM_FLAG_INACTIVE,
                                             params.data(), params.size());
  if (result < 0) log_.error(logText("a node that is to go last could not be made (%d)", result));
  return straggler;
}

}  // namespace quillmere::pipewire
