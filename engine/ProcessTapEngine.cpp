// The engine's tables and the rules by which subgraphs come and go.
#include "engine/ProcessTapEngine.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

#include "core/BundleID.h"
#include "core/Mixer.h"
#include "platform/EngineQueue.h"
#include "runtime/Threads.h"

namespace quillmere {

namespace {

std::atomic<ProcessTapEngine*> installed{nullptr};

constexpr float unityTolerance = std::bit_cast<float>(0x3ba3d70aU);  // 0.005

/// Whether a gain leaves the sound as it is, as far as the engine is concerned.
bool isUnity(float gain) { return std::fabs(gain - 1.0F) < unityTolerance; }

template <typename Value>
std::vector<std::string> keysOf(const std::map<std::string, Value>& table) {
  std::vector<std::string> keys;
  keys.reserve(table.size());
  for (const auto& entry : table) keys.push_back(entry.first);
  return keys;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string result;
  for (const auto& text : texts) {
    if (!result.empty()) result += ", ";
    result += text;
  }
  return result;
}

}  // namespace

ProcessTapEngine::ProcessTapEngine(AudioHardware& hardware, const Runtime& runtime)
    : hardware_(hardware),
      clocks_(runtime.clocks),
      log_(runtime.log, "ProcessTapEngine"),
      queue_(runtime.makeSerialQueue(engineQueueLabel)),
      builds_(*queue_, [this](const std::string& bundleID, std::unique_ptr<ProcessTapSubgraph> subgraph) {
        takeBuilt(bundleID, std::move(subgraph));
      }) {}

ProcessTapEngine::~ProcessTapEngine() {
  ProcessTapEngine* self = this;
  installed.compare_exchange_strong(self, nullptr);
  going_ = true;
  queue_->sync([this] {
    builds_.abandon();
    subgraphs_.clear();
  });
  // Runs what came in meanwhile, which by now does nothing, before the tables go.
  queue_.reset();
}

ProcessTapEngine& ProcessTapEngine::shared() {
  auto* const engine = installed.load();
  if (engine == nullptr) preconditionFailure("no engine is installed");
  return *engine;
}

void ProcessTapEngine::install() { installed.store(this); }

template <typename Body>
void ProcessTapEngine::queueBody(Body body) {
  // The engine outlives its queue and the queue finishes what is queued, so the plain pointer is good for as long as
  // the body can run.
  queue_->async([this, body = std::move(body)] {
    if (!going_) body();
  });
}

void ProcessTapEngine::queueInTurn(const std::string& bundleID, Work step) {
  queueBody([this, bundleID, step = std::move(step)] { builds_.inTurn(bundleID, step); });
}

void ProcessTapEngine::applyGain(float gain, const std::string& bundleID) {
  queueInTurn(bundleID, [this, gain, bundleID] {
    const float clamped = Mixer{}.clampGain(gain);
    const bool isRouted = routingMap_.contains(bundleID);
    log_.info(logText("applyGain %s → %.2f (routed=%s)", bundleID.c_str(), static_cast<double>(clamped),
                      isRouted ? "true" : "false"));
    if (isUnity(clamped) && !isRouted) {
      tearDownSubgraphLocked(bundleID);
    } else if (const auto found = subgraphs_.find(bundleID); found != subgraphs_.end()) {
      found->second->setTargetGain(clamped);
    } else {
      spawnSubgraphLocked(bundleID, clamped);
    }
  });
}

void ProcessTapEngine::applyRouting(const std::optional<std::string>& deviceUID, const std::string& bundleID) {
  queueInTurn(bundleID, [this, deviceUID, bundleID] {
    const bool isRouted = deviceUID && !deviceUID->empty();
    const auto old = routingMap_.find(bundleID);
    if (isRouted) {
      if (old != routingMap_.end() && old->second == *deviceUID) return;
      routingMap_[bundleID] = *deviceUID;
    } else {
      if (old == routingMap_.end()) return;
      routingMap_.erase(old);
    }
    log_.info("applyRouting " + bundleID + " → " + (isRouted ? *deviceUID : "system-default"));

    // A subgraph's device cannot be changed in place: a new route is a new tap and a new aggregate.
    if (const auto gain = tearDownSubgraphLocked(bundleID)) {
      if (isRouted || !isUnity(*gain)) spawnSubgraphLocked(bundleID, *gain);
    } else if (isRouted) {
      // At unity too: only a subgraph can move an application's sound.
      spawnSubgraphLocked(bundleID, 1.0F);
    }
  });
}

void ProcessTapEngine::updateProcessMap(std::vector<CoreAudioProcessMonitor::Snapshot> snapshots) {
  // Held until the list is queued: what was told last is what the queue takes in last.
  const std::lock_guard lock(toldMutex_);
  // Nearly every poll tells what the one before has told, and there is no reason to wake the queue for it.
  if (told_ == snapshots) return;
  told_ = snapshots;
  queueBody([this, snapshots = std::move(snapshots)] {
    std::map<std::string, std::set<AudioObjectID>> next;
    for (const auto& snapshot : snapshots) {
      if (!snapshot.bundleID.empty()) next[parentKey(snapshot.bundleID)].insert(snapshot.audioObjectID);
    }
    if (next == processMap_) return;
    const auto keys = keysOf(next);
    if (keys != keysOf(processMap_)) log_.info("processMap = [" + joined(keys) + "]");
    const auto old = std::exchange(processMap_, std::move(next));

    // A routed application that had no process to tap gets its subgraph when it first has one. Running subgraphs keep
    // the processes they were built with, and those of applications that are gone stay.
    for (const auto& bundleID : keys) {
      if (old.contains(bundleID)) continue;
      builds_.inTurn(bundleID, [this, bundleID] {
        const bool isWanted = routingMap_.contains(bundleID) && processMap_.contains(bundleID);
        if (isWanted && !subgraphs_.contains(bundleID)) spawnSubgraphLocked(bundleID, 1.0F);
      });
    }
  });
}

void ProcessTapEngine::refreshUnroutedSubgraphsForNewSystemDefault() {
  queueBody([this] {
    const auto rebuild = [this](const std::string& bundleID) {
      if (routingMap_.contains(bundleID)) return;
      if (const auto gain = tearDownSubgraphLocked(bundleID)) spawnSubgraphLocked(bundleID, *gain);
    };
    const auto onTheirWay = builds_.applications();
    for (const auto& bundleID : keysOf(subgraphs_)) rebuild(bundleID);
    for (const auto& bundleID : onTheirWay) builds_.inTurn(bundleID, [rebuild, bundleID] { rebuild(bundleID); });
  });
}

std::set<std::string> ProcessTapEngine::activeBundleIDs() const {
  const auto now = clocks_.monotonicNow();
  std::set<std::string> active;
  const std::lock_guard lock(activitiesMutex_);
  for (auto& [bundleID, activity] : activities_) {
    if (activity.isHeard(now)) active.insert(active.end(), bundleID);
  }
  return active;
}

bool ProcessTapEngine::isHearing() const {
  const std::lock_guard lock(activitiesMutex_);
  return std::ranges::any_of(activities_, [](const auto& entry) { return entry.second.isMoving(); });
}

void ProcessTapEngine::stop() {
  queue_->sync([this] {
    isStopping_ = true;
    // What has waited for a path still counts for the routes.
    for (const auto& step : builds_.abandon()) step();
    isStopping_ = false;
    for (const auto& bundleID : keysOf(subgraphs_)) tearDownSubgraphLocked(bundleID);
  });
}

void ProcessTapEngine::spawnSubgraphLocked(const std::string& bundleID, float initialGain) {
  queue_->preconditionOnQueue();
  if (isStopping_) return;
  const auto processes = processMap_.find(bundleID);
  if (processes == processMap_.end() || processes->second.empty()) {
    log_.standard("no CoreAudio process objects for " + bundleID +
                  " yet (process must be playing audio for the tap to attach)");
    return;
  }
  const auto route = routingMap_.find(bundleID);
  builds_.build(bundleID,
                std::make_unique<ProcessTapSubgraph>(
                    hardware_, clocks_, bundleID,
                    std::vector<AudioObjectID>(processes->second.begin(), processes->second.end()), log_),
                initialGain, route == routingMap_.end() ? std::nullopt : std::optional(route->second));
}

void ProcessTapEngine::takeBuilt(const std::string& bundleID, std::unique_ptr<ProcessTapSubgraph> subgraph) {
  if (!subgraph) {
    log_.error("subgraph activation failed for " + bundleID);
    return;
  }
  InputActivity activity(subgraph->words());
  subgraphs_[bundleID] = std::move(subgraph);
  {
    const std::lock_guard lock(activitiesMutex_);
    activities_.insert_or_assign(bundleID, std::move(activity));
  }
  changes_.raise();
}

std::optional<float> ProcessTapEngine::tearDownSubgraphLocked(const std::string& bundleID) {
  queue_->preconditionOnQueue();
  const auto node = subgraphs_.extract(bundleID);
  if (node.empty()) return std::nullopt;
  const float gain = node.mapped()->targetGain();
  node.mapped()->invalidate();
  const std::lock_guard lock(activitiesMutex_);
  activities_.erase(bundleID);
  return gain;
}

}  // namespace quillmere
