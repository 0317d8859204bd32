// One timer, set while something is owed.
#include "shell/AnswerWatch.h"

#include <algorithm>
#include <utility>

#include "runtime/Threads.h"

namespace quillmere {

AnswerWatch::AnswerWatch(const Runtime& runtime, std::function<void()> hangs)
    : runtime_(runtime), hangs_(std::move(hangs)) {}

AnswerWatch::~AnswerWatch() {
  if (timer_ != 0) runtime_.main.cancelTimer(timer_);
}

void AnswerWatch::started() {
  asked_ = 0;
  done_ = 0;
  enter(At::start);
}

void AnswerWatch::cameUp() { enter(At::rest); }

void AnswerWatch::asked(std::uint64_t number) {
  const bool isFirst = !owes();
  asked_ = number;
  if (isFirst && at_ == At::rest) {
    enter(At::rest);
  } else if (timer_ == 0) {
    arm(std::max(limit(), runtime_.clocks.monotonicNow() + answerPatience));
  }
}

void AnswerWatch::tookUp() { enter(At::work); }

void AnswerWatch::done(std::uint64_t number) {
  done_ = std::max(done_, number);
  enter(At::rest);
}

void AnswerWatch::ended() { started(); }

void AnswerWatch::enter(At at) {
  QUILLMERE_CHECK_ON(runtime_.main, "answers are watched off the main thread");
  at_ = at;
  since_ = runtime_.clocks.monotonicNow();
  isSuspected_ = false;
  if (timer_ != 0) runtime_.main.cancelTimer(std::exchange(timer_, 0));
  if (owes()) arm(limit());
}

MonotonicTime AnswerWatch::limit() const {
  switch (at_) {
    case At::start:
      return since_ + startPatience;
    case At::work:
      return since_ + workPatience;
    case At::rest:
      break;
  }
  return since_ + answerPatience;
}

void AnswerWatch::arm(MonotonicTime time) {
  const auto wait = std::max(time - runtime_.clocks.monotonicNow(), Duration::zero());
  timer_ = runtime_.main.postAfter(wait, [this] { look(); });
}

void AnswerWatch::look() {
  timer_ = 0;
  if (std::exchange(isSuspected_, true)) {
    hangs_();
  } else {
    arm(runtime_.clocks.monotonicNow() + secondLook);
  }
}

}  // namespace quillmere
