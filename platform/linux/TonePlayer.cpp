// Voices come when a sound is asked for and go when it has ended.
#include "platform/linux/TonePlayer.h"

#include <map>
#include <mutex>
#include <utility>

#include "sounds/ToneVoice.h"
#include "sounds/Tones.h"

namespace quillmere {
namespace {

/// A sound without an output never ends by itself.
constexpr Duration longestSound = std::chrono::seconds(4);
constexpr std::size_t maxVoices = 8;

}  // namespace

class TonePlayer::Voices : public std::enable_shared_from_this<Voices> {
 public:
  Voices(const Runtime& runtime, std::string remote)
      : background_(runtime.background), log_(runtime.log, "TonePlayer"), remote_(std::move(remote)) {}

  void play(std::string_view name) {
    const std::lock_guard lock(mutex_);
    if (voices_.size() >= maxVoices || isClosed_) return;
    const auto number = ++lastNumber_;
    voices_.emplace(number, nullptr);
    background_.post([weak = weak_from_this(), number, name = std::string(name)] {
      if (const auto self = weak.lock()) self->start(number, name);
    });
  }

  std::size_t count() const {
    const std::lock_guard lock(mutex_);
    return voices_.size();
  }

  void close() {
    std::map<std::uint64_t, std::unique_ptr<sounds::ToneVoice>> voices;
    {
      const std::lock_guard lock(mutex_);
      isClosed_ = true;
      voices.swap(voices_);
    }
  }

 private:
  void start(std::uint64_t number, const std::string& name) {
    const auto finish = [weak = weak_from_this(), number] {
      if (const auto self = weak.lock()) self->finish(number);
    };
    auto voice = std::make_unique<sounds::ToneVoice>(sounds::tone(name), remote_,
                                                     [&background = background_, finish] { background.post(finish); });
    if (!voice->isStarted()) {
      log_.standard("\"" + name + "\" not played: no audio daemon");
      finish();
      return;
    }
    // Where the sound has ended already, or the player was closed, the voice goes here, after the lock.
    const std::lock_guard lock(mutex_);
    const auto place = voices_.find(number);
    if (place == voices_.end()) return;
    place->second = std::move(voice);
    background_.postAfter(longestSound, finish);
  }

  void finish(std::uint64_t number) {
    std::unique_ptr<sounds::ToneVoice> voice;
    const std::lock_guard lock(mutex_);
    const auto place = voices_.find(number);
    if (place == voices_.end()) return;
    voice = std::move(place->second);
    voices_.erase(place);
  }

  Executor& background_;
  Logger log_;
  const std::string remote_;
  mutable std::mutex mutex_;
  std::map<std::uint64_t, std::unique_ptr<sounds::ToneVoice>> voices_;
  std::uint64_t lastNumber_ = 0;
  bool isClosed_ = false;
};

TonePlayer::TonePlayer(const Runtime& runtime, std::string remote)
    : voices_(std::make_shared<Voices>(runtime, std::move(remote))) {}

TonePlayer::~TonePlayer() { voices_->close(); }

bool TonePlayer::play(std::string_view name) {
  if (name != "Glass" && name != "Hero") return false;
  voices_->play(name);
  return true;
}

std::size_t TonePlayer::soundingCount() const { return voices_->count(); }

}  // namespace quillmere
