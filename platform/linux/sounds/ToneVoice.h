// One sound on its way to the speakers: a PipeWire stream with a connection of its own that goes when it has ended.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quillmere::sounds {

/// [background]
class ToneVoice {
 public:
  /// Connects and starts to play. `onEnd` is called once, on the stream's own thread, when the sound has ended or can't
  /// be played; the voice must not be destroyed in it. [background]
  ToneVoice(std::vector<float> samples, const std::string& remote, std::function<void()> onEnd);
  /// Stops what still plays. [background]
  ~ToneVoice();
  ToneVoice(const ToneVoice&) = delete;
  ToneVoice& operator=(const ToneVoice&) = delete;

  /// False if there is no daemon to play through; `onEnd` is not called then.
  [[nodiscard]] bool isStarted() const;

 private:
  struct Fields;
  std::unique_ptr<Fields> fields_;
};

}  // namespace quillmere::sounds
