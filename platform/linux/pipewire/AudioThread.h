// The PipeWire library's real-time thread, as long as something of ours runs on it.
#pragma once

#include "Loop.h"

struct pw_context;
struct pw_loop;

namespace quillmere::pipewire {

/// Libraries before 1.2 start it with the context and keep it; newer ones start it for whoever asks for its loop.
/// [loop] throughout. Lives as long as the context, and only for contexts whose thread nobody else uses.
class AudioThread {
 public:
  AudioThread(Loop& loop, pw_context* context);
  ~AudioThread();
  AudioThread(const AudioThread&) = delete;
  AudioThread& operator=(const AudioThread&) = delete;

  /// Keeps it for as long as this is there. A context without an AudioThread has it anyway.
  class Use {
   public:
    explicit Use(pw_context* context);
    ~Use();
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

   private:
    AudioThread* thread_;
  };

 private:
  void start();
  void stop();

  pw_context* context_;
  /// Whether the library leaves it to us.
  bool isOurs_;
  bool isRunning_ = true;
  int uses_ = 0;
  LoopTimer rest_;
};

}  // namespace quillmere::pipewire
