// Whether another process goes on answering: what it is asked is numbered, and it says what it has taken up and what it
// is done with.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include "runtime/Runtime.h"

namespace quillmere {

/// [main] throughout. A process that owes nothing is not looked at.
class AnswerWatch {
 public:
  /// How long the first word of a process that has just been started may take: it is loaded, and so may be the machine.
  /// Well under a second as a rule. With the disk and the processor busy it takes many times that, and so would the
  /// next one: to replace it only makes it worse.
  static constexpr Duration startPatience = std::chrono::seconds(60);
  /// How long it may take to take up what it was asked.
  static constexpr Duration answerPatience = std::chrono::seconds(4);
  /// How long it may be at one thing, such as the first picture of a window.
  static constexpr Duration workPatience = std::chrono::seconds(15);
  /// What was said in time may still wait for this thread, which may have been stopped itself: it gets this long.
  static constexpr Duration secondLook = std::chrono::milliseconds(500);

  /// `hangs` is called once the process has kept somebody waiting for too long, and may start the next.
  AnswerWatch(const Runtime& runtime, std::function<void()> hangs);
  ~AnswerWatch();
  AnswerWatch(const AnswerWatch&) = delete;
  AnswerWatch& operator=(const AnswerWatch&) = delete;

  /// A process has been started; it has been asked nothing yet.
  void started();
  /// It has said its first word.
  void cameUp();
  void asked(std::uint64_t number);
  /// It is at what it was asked.
  void tookUp();
  /// With that, and with all before it.
  void done(std::uint64_t number);
  /// There is no process any more.
  void ended();

 private:
  enum class At { start, rest, work };

  void enter(At at);
  [[nodiscard]] bool owes() const { return asked_ > done_; }
  [[nodiscard]] MonotonicTime limit() const;
  void arm(MonotonicTime time);
  void look();

  Runtime runtime_;
  std::function<void()> hangs_;
  At at_ = At::rest;
  MonotonicTime since_{};
  std::uint64_t asked_ = 0;
  std::uint64_t done_ = 0;
  bool isSuspected_ = false;
  TimerID timer_ = 0;
};

}  // namespace quillmere
