#include "DefaultOutput.h"

#include <algorithm>
#include <utility>

namespace quillmere::pipewire {
namespace {

/// What the PulseAudio server and session managers make where there is nothing to play on. To be sent there is to have
/// no default.
constexpr std::string_view dummyOutput = "auto_null";

/// The session manager's word, if it can be followed.
std::optional<std::string> wordOf(const DefaultOutput::Facts& facts) {
  if (!facts.hasSessionManager || !facts.told || !facts.outputs.contains(*facts.told)) return std::nullopt;
  return facts.told;
}

}  // namespace

bool DefaultOutput::Verdict::holds(std::string_view uid) const { return holdsDevices && uid != dummyOutput; }

MonotonicTime DefaultOutput::Restart::end() const {
  const auto latest = lostAt + longestGap;
  return lastNewsAt ? std::min(latest, *lastNewsAt + settlingTime) : latest;
}

MonotonicTime DefaultOutput::Choice::deadline() const {
  return recordedAt ? *recordedAt + decisionTime : madeAt + longestSilence;
}

void DefaultOutput::choose(std::string name, MonotonicTime now) {
  choice_ = Choice{std::move(name), now, choice_.has_value(), std::nullopt};
}

DefaultOutput::Verdict DefaultOutput::judge(const Facts& facts, MonotonicTime now) {
  const auto word = wordOf(facts);
  const bool isDummy = word && *word == dummyOutput;
  followRestart(facts, isDummy ? std::nullopt : word, now);

  Verdict verdict;
  verdict.holdsDevices = restart_.has_value();
  if (choice_) {
    verdict.outcome = judgeChoice(facts, word, now);
    if (verdict.outcome == Outcome::refused) verdict.refused = choice_->name;
    if (verdict.outcome != Outcome::none) choice_.reset();
  }
  verdict.isAwaited = choice_.has_value();

  const bool isOneOfTheFirst = restart_ && !restart_->isDefaultBack && last_ && word != last_;
  if (word && !isDummy && !isOneOfTheFirst) {
    last_ = word;
    gapSince_.reset();
    if (restart_) restart_->isDefaultBack = true;
  } else {
    if (!gapSince_) gapSince_ = now;
    const bool isHeld = last_ && (restart_ || now < *gapSince_ + longestGap);
    if (!isHeld) last_ = word;
  }
  verdict.name = choice_ ? std::optional(choice_->name) : last_;
  verdict.validUntil = nextDeadline(now);
  return verdict;
}

void DefaultOutput::followRestart(const Facts& facts, const std::optional<std::string>& word, MonotonicTime now) {
  const bool isLost = std::exchange(hadSessionManager_, facts.hasSessionManager) && !facts.hasSessionManager;
  if (isLost) {
    restart_ = Restart{now, facts.outputs, std::nullopt, false};
    // Nobody will write it again: what the successor has on record is what it will be.
    if (choice_) choice_->recordedAt = now;
  }
  if (!restart_) return;
  const bool isNews = std::exchange(restart_->outputs, facts.outputs) != facts.outputs;
  if (word && (isNews || !restart_->lastNewsAt)) restart_->lastNewsAt = now;
  if (now >= restart_->end()) restart_.reset();
}

DefaultOutput::Outcome DefaultOutput::judgeChoice(const Facts& facts, const std::optional<std::string>& word,
                                                  MonotonicTime now) {
  if (word == choice_->name) {
    return choice_->isSecond && now < choice_->madeAt + decisionTime ? Outcome::none : Outcome::taken;
  }
  // Its successor may have it on record, and chooses when it has met the devices.
  if (restart_) return Outcome::none;
  if (!facts.hasSessionManager || !facts.outputs.contains(choice_->name)) return Outcome::refused;
  if (facts.onRecord == choice_->name) {
    if (!choice_->recordedAt) choice_->recordedAt = now;
  } else if (choice_->recordedAt && facts.onRecord && !choice_->isSecond) {
    // Somebody else has chosen after us.
    return Outcome::refused;
  }
  return now >= choice_->deadline() ? Outcome::refused : Outcome::none;
}

std::optional<MonotonicTime> DefaultOutput::nextDeadline(MonotonicTime now) const {
  std::optional<MonotonicTime> next;
  const auto consider = [&](MonotonicTime time) {
    if (time > now) next = next ? std::min(*next, time) : time;
  };
  if (restart_) consider(restart_->end());
  if (choice_) {
    consider(choice_->deadline());
    if (choice_->isSecond) consider(choice_->madeAt + decisionTime);
  }
  if (gapSince_) consider(*gapSince_ + longestGap);
  return next;
}

}  // namespace quillmere::pipewire
