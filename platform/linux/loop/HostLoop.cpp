// A main context, a thread, and work that is handed over to it.
#include "loop/HostLoop.h"

#include <pthread.h>

#include <future>
#include <mutex>
#include <utility>

#include "loop/LoopSource.h"
#include "runtime/Threads.h"

namespace quillmere {

std::shared_ptr<HostLoop> HostLoop::ofProcess() {
  static std::mutex mutex;
  static std::weak_ptr<HostLoop> held;
  const std::scoped_lock lock(mutex);
  auto loop = held.lock();
  if (!loop) held = loop = std::make_shared<HostLoop>();
  return loop;
}

HostLoop::HostLoop() : context_(g_main_context_new()), thread_([this] { run(); }) {}

HostLoop::~HostLoop() {
  if (isCurrent()) preconditionFailure("the host's loop was ended on its own thread");
  post([this] { isEnding_ = true; });
  thread_.join();
  g_main_context_unref(context_);
}

void HostLoop::post(std::function<void()> work) {
  GSource* source = g_idle_source_new();
  g_source_set_priority(source, G_PRIORITY_DEFAULT);
  setWork(source, [work = std::move(work)] {
    work();
    return G_SOURCE_REMOVE;
  });
  g_source_attach(source, context_);
  g_source_unref(source);
}

void HostLoop::perform(const std::function<void()>& work) {
  if (isCurrent()) {
    work();
    return;
  }
  // The one who tells may be the last to let go of it.
  const auto done = std::make_shared<std::promise<void>>();
  post([&work, done] {
    work();
    done->set_value();
  });
  done->get_future().wait();
}

void HostLoop::run() {
  id_ = std::this_thread::get_id();
  pthread_setname_np(pthread_self(), "quillmere-loop");
  g_main_context_push_thread_default(context_);
  while (!isEnding_ || expected_ > 0) g_main_context_iteration(context_, TRUE);
  // GLib frees what handlers held in a turn of its own.
  while (g_main_context_iteration(context_, FALSE) != FALSE) {
  }
  g_main_context_pop_thread_default(context_);
}

}  // namespace quillmere
