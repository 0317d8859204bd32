// Auto-Duck: chosen applications are turned down while a trigger holds the microphone, and put back after a delay.
// Gains change in single steps; the rule's fade length is stored for the user and read by nobody.
#include <algorithm>
#include <chrono>

#include "runtime/OrderedBackground.h"
#include "state/AppState.h"
#include "state/EngineCalls.h"

namespace quillmere {

namespace {

std::set<std::string> intersection(const std::set<std::string>& left, const std::set<std::string>& right) {
  std::set<std::string> common;
  std::ranges::set_intersection(left, right, std::inserter(common, common.end()));
  return common;
}

/// A stored delay is any 64-bit number: negative counts as none, and years beyond counting as very long.
std::chrono::milliseconds restoreDelay(std::int64_t millis) {
  constexpr std::int64_t thirtyYears = 1'000'000'000'000;
  return std::chrono::milliseconds(std::clamp<std::int64_t>(millis, 0, thirtyYears));
}

}  // namespace

void AppState::evaluateDucking() {
  const bool triggered = !intersection(duckRule_->triggerBundleIDs, *micBundleIDs_).empty();

  // A lowered application that opens the microphone gets its own gain back at once: the call itself is never ducked.
  if (*isDucking_) {
    for (const auto& bundleID : intersection(*duckedBundleIDs_, *micBundleIDs_)) restoreDuckedApp(bundleID);
  }

  if (!triggered) {
    if (!*isDucking_) return;
    restoreTask_.cancel();
    restoreTask_ = startTask(runtime_.main,
                             [self = shared_from_this(),
                              delay = restoreDelay(duckRule_->restoreDelayMillis)](TaskContext& task) -> Async<void> {
                               co_await task.sleep(delay);
                               if (!task.isCancelled()) self->endDucking();
                             });
    return;
  }

  // A trigger that is back within the delay does not stop the waiting restore; the next change ducks afresh.
  if (*isDucking_) return;
  restoreTask_.cancel();
  restoreTask_ = Task();
  beginDucking();
}

void AppState::beginDucking() {
  isDucking_.set(true);

  std::set<std::string> lowered;
  std::vector<std::string> toSend;
  auto apps = apps_.get();
  for (auto& app : apps) {
    if (micBundleIDs_->contains(app.bundleID)) continue;
    if (!duckRule_->duckedBundleIDs.contains(app.bundleID)) continue;
    preDuckGains_[app.bundleID] = app.gain;
    // A flat value: one that stood below the target is raised to it.
    app.gain = duckRule_->targetGain;
    lowered.insert(app.bundleID);
    toSend.push_back(app.bundleID);
  }
  apps_.set(std::move(apps));

  for (const auto& bundleID : toSend) {
    engineTasks_->post(
        [engine = engine_, target = duckTargetGain_, bundleID] { engine->applyGain(target->load(), bundleID); });
  }
  duckedBundleIDs_.set(std::move(lowered));
}

void AppState::restoreDuckedApp(const std::string& bundleID) {
  duckedBundleIDs_.modify([&bundleID](auto& ducked) { ducked.erase(bundleID); });
  const auto saved = preDuckGains_.extract(bundleID);
  if (saved.empty()) return;
  restoreGains({{bundleID, saved.mapped()}});
}

void AppState::endDucking() {
  isDucking_.set(false);

  std::map<std::string, float> saved;
  for (const auto& bundleID : *duckedBundleIDs_) {
    if (const auto gain = preDuckGains_.find(bundleID); gain != preDuckGains_.end()) saved.insert(*gain);
  }
  restoreGains(saved);

  duckedBundleIDs_.set({});
  preDuckGains_.clear();
}

}  // namespace quillmere
