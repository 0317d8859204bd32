// Starting and stopping, by the number of those who use it.
#include "AudioThread.h"

#include <pipewire/pipewire.h>

#include "LibraryVersion.h"

namespace quillmere::pipewire {
namespace {

/// By this the context knows whose thread it has.
constexpr const char* objectType = "app.quillmere:AudioThread";

/// The system hands out real-time priority so many times in a while, and each new thread asks for it.
constexpr Duration restAfter = std::chrono::seconds(20);

bool isKeptByLibrary() { return libraryVersion(pw_get_library_version()) < LibraryVersion{1, 2, 0}; }

}  // namespace

AudioThread::AudioThread(Loop& loop, pw_context* context)
    : context_(context), isOurs_(isKeptByLibrary()), rest_(loop, [this] {
        if (uses_ == 0) stop();
      }) {
  if (!isOurs_) return;
  pw_context_set_object(context_, objectType, this);
  stop();
}

AudioThread::~AudioThread() {
  if (isOurs_) pw_context_set_object(context_, objectType, nullptr);
}

void AudioThread::start() {
  if (!isRunning_) isRunning_ = pw_data_loop_start(pw_context_get_data_loop(context_)) == 0;
}

void AudioThread::stop() {
  if (isRunning_) pw_data_loop_stop(pw_context_get_data_loop(context_));
  isRunning_ = false;
}

AudioThread::Use::Use(pw_context* context)
    : thread_(static_cast<AudioThread*>(pw_context_get_object(context, objectType))) {
  if (thread_ == nullptr) return;
  ++thread_->uses_;
  thread_->rest_.disarm();
  thread_->start();
}

AudioThread::Use::~Use() {
  if (thread_ != nullptr && --thread_->uses_ == 0) thread_->rest_.arm(restAfter);
}

}  // namespace quillmere::pipewire
