#include "Host.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "DetourNode.h"
#include "MetadataValue.h"
#include "TapNode.h"

namespace quillmere::pipewire {
namespace {

/// When the first metadata has surely come.
constexpr Duration staleTargetDelay = std::chrono::milliseconds(500);
/// By then a client that has just come knows the metadata.
constexpr Duration refreshDelay = std::chrono::milliseconds(400);
/// Where clients come and go all the time, the metadata is told again this often.
constexpr Duration longestRefreshDelay = std::chrono::seconds(2);
/// How long the end of the program waits for its last words to be heard.
constexpr Duration farewellTime = std::chrono::milliseconds(200);

std::uint64_t nanosOf(MonotonicTime time) { return static_cast<std::uint64_t>(time.time_since_epoch().count()); }

bool isDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

Host::Host(Executor& main, LogSink& log, ApplicationIdentifier identify, PipeWireOptions options)
    : listeners(main),
      log_(log, "PipeWire"),
      options_(std::move(options)),
      model_(std::move(identify), log_, static_cast<std::int32_t>(getpid())),
      changed_(loop_, [this] { flush(); }),
      judgement_(loop_, [this] { publish(); }),
      staleTargets_(loop_, [this] { deleteStaleTargets(); }),
      refresh_(loop_,
               [this] {
                 latestRefresh_.reset();
                 watcher_.refreshMetadata();
                 refreshSync_ = connection_.sync();
                 // One that was under way is not waited for any more: all is told anew.
                 secondRefreshSync_ = -1;
               }),
      ticks_(loop_,
             [this] {
               isTicking_ = false;
               director_.tick();
               publish();
               attend();
             }),
      moment_(loop_,
              [this] {
                director_.moment();
                publish();
                attend();
              }),
      watcher_(model_, {[this] { changed_.raise(); }, [this](bool isThere) { onMetadataPresence(isThere); },
                        [this](GlobalID subject, const std::string& key, const std::optional<std::string>& value) {
                          onMetadata(subject, key, value);
                        },
                        [this] { expectMissedMetadata(); }, [this] { volume_.volumesTold(); }}),
      volume_(loop_, model_, watcher_, [this] { publish(); }),
      mover_(model_, watcher_, log_),
      connection_(loop_, options_.remote, log_,
                  {[this](pw_core* core) { onConnected(core); },
                   [this](std::uint32_t client) { model_.setOwnClient(client); }, [this] { onLost(); },
                   [this](int sequence) { onDone(sequence); }, [this](int sequence) { onNodesDone(sequence); }}),
      jack_(
          model_,
          [this](const std::vector<std::string>& channels) -> std::unique_ptr<Detour> {
            auto* core = connection_.nodeCore();
            if (core == nullptr) return nullptr;
            return std::make_unique<DetourNode>(loop_, core, nameOfNode("detour"), channels, log_,
                                                [this] { changed_.raise(); });
          },
          log_),
      feeders_({&mover_, &jack_}),
      stragglers_(
          loop_, model_, [this](std::size_t place) { return connection_.outerCore(place); }, log_,
          [this] { changed_.raise(); }),
      scouts_(
          loop_, model_, stragglers_, [this] { return connection_.nodeCore(); }, log_, [this] { changed_.raise(); }),
      director_(
          model_, feeders_, scouts_, ids_,
          [this](const std::optional<std::string>& output, const std::function<void()>&) -> std::unique_ptr<TapPath> {
            auto* core = connection_.nodeCore();
            if (core == nullptr) return nullptr;
            // Told through the signal: a node must not be destroyed from its own callback.
            return std::make_unique<TapNode>(core, model_, nameOfNode("tap"), output, log_,
                                             [this] { changed_.raise(); });
          },
          [this](std::uint64_t nanos) { moment_.armAt(nanos); }, log_) {
  {
    const LoopLock lock(loop_);
    connection_.open();
  }
  if (!loop_.start()) log_.error("the PipeWire thread could not be started");
  std::unique_lock lock(shared_.mutex);
  shared_.complete.wait_for(lock, options_.firstSnapshotTimeout, [this] { return shared_.isComplete; });
}

Host::~Host() {
  {
    const LoopLock lock(loop_);
    refresh_.disarm();
    director_.giveEverythingBack();
    farewellSync_ = connection_.sync();
    nodesFarewellSync_ = connection_.syncNodes();
    shared_.farewellsAwaited = 2;
  }
  if (farewellSync_ >= 0) {
    std::unique_lock lock(shared_.mutex);
    shared_.complete.wait_for(lock, farewellTime, [this] { return shared_.farewellsAwaited == 0; });
  }
  {
    const LoopLock lock(loop_);
    connection_.close();
  }
  loop_.stop();
}

std::string Host::nameOfNode(std::string_view kind) {
  return std::string(ourNodePrefix) + std::string(kind) + "-" + std::to_string(getpid()) + "-" +
         std::to_string(++nodesMade_);
}

// --- events ----------------------------------------------------------------------------------------------------------

void Host::onConnected(pw_core* core) {
  watcher_.attach(core);
  firstSync_ = connection_.sync();
  staleTargets_.arm(staleTargetDelay);
}

void Host::onLost() {
  director_.suspend();
  hasToldOfKeeper_ = false;
  volume_.forget();
  uncertain_.clear();
  firstSync_ = secondSync_ = refreshSync_ = secondRefreshSync_ = -1;
  isSynced_ = false;
  staleTargets_.disarm();
  refresh_.disarm();
  latestRefresh_.reset();
  watcher_.detach();
  publish();
}

void Host::onDone(int sequence) {
  if (sequence == firstSync_) {
    // All globals are known; what was bound on the way answers before the second round trip does.
    secondSync_ = connection_.sync();
  } else if (sequence == secondSync_) {
    isSynced_ = true;
    changed_.raise();
  } else if (sequence == refreshSync_) {
    secondRefreshSync_ = connection_.sync();
  } else if (sequence == secondRefreshSync_) {
    watcher_.metadataRefreshed();
  } else if (sequence == farewellSync_) {
    noteFarewell();
  } else if (std::erase_if(uncertain_, [&](const auto& entry) { return entry.second == sequence; }) > 0) {
    changed_.raise();
  }
}

void Host::onNodesDone(int sequence) {
  if (sequence == nodesFarewellSync_) noteFarewell();
}

void Host::noteFarewell() {
  const std::lock_guard lock(shared_.mutex);
  --shared_.farewellsAwaited;
  shared_.complete.notify_all();
}

void Host::onMetadata(GlobalID subject, const std::string& key, const std::optional<std::string>& value) {
  if (key == "target.object") mover_.onTargetChanged(subject, value);
  if (key == "target.node") mover_.onNodeTargetChanged(subject, value);
  if (subject != 0 || key != "default.audio.sink" || !value) return;
  if (watcher_.metadataKeeper() == "pipewire-media-session") {
    // It moves no stream to a tap, and tries to link one of our nodes to another at every change of the graph.
    if (!std::exchange(hasToldOfKeeper_, true)) {
      log_.error(
          "the session manager is pipewire-media-session, under which nothing can be tapped: the volumes and outputs "
          "of applications wait for WirePlumber");
    }
  } else {
    // A session manager that knows the default has seen the whole graph. One that starts and meets a node of ours
    // half-way would never link anything.
    director_.resume();
  }
  if (!nameFromMetadata(*value)) {
    log_.error("default output in the session manager's metadata can't be read: " + value->substr(0, 200));
  }
}

void Host::expectMissedMetadata() {
  const auto now = std::chrono::steady_clock::now();
  if (!latestRefresh_) latestRefresh_ = now + longestRefreshDelay;
  refresh_.arm(std::clamp<Duration>(*latestRefresh_ - now, Duration::zero(), refreshDelay));
}

void Host::onMetadataPresence(bool isThere) {
  if (isThere) {
    staleTargets_.arm(staleTargetDelay);
  } else {
    // A node of ours that outlived the session manager would keep its successor from linking anything.
    hasToldOfKeeper_ = false;
    director_.suspend();
    connection_.metadataKeeperGone();
  }
}

void Host::deleteStaleTargets() {
  // Left by a run of ours that was killed: a serial is never given twice, so nobody else can mean it.
  auto stale = model_.metadata();
  std::erase_if(stale, [&](const auto& entry) {
    return entry.first.second != "target.object" || !isDigits(entry.second) ||
           model_.nodeIDBySerial(entry.second).has_value() || model_.node(entry.first.first) == nullptr;
  });
  for (const auto& [place, serial] : stale) {
    log_.info(logText("stream %u had a target that is gone (%s)", place.first, serial.substr(0, 32).c_str()));
    watcher_.write(place.first, place.second, "", std::nullopt);
  }
}

void Host::flush() {
  scouts_.graphChanged();
  volume_.graphChanged();
  director_.graphChanged();
  attend();
  publish();
}

void Host::attend() {
  if (isTicking_ || !director_.wantsTicks()) return;
  isTicking_ = true;
  ticks_.arm(TapDirector::tickInterval);
}

DefaultOutput::Facts Host::factsOf(const AudioSnapshot& fresh) const {
  const auto nameAt = [&](const char* key) -> std::optional<std::string> {
    const auto value = model_.metadataValue(0, key);
    return value ? nameFromMetadata(*value) : std::nullopt;
  };
  DefaultOutput::Facts facts;
  facts.hasSessionManager = isSynced_ && watcher_.hasMetadata();
  facts.told = nameAt("default.audio.sink");
  facts.onRecord = nameAt("default.configured.audio.sink");
  for (const auto& device : fresh.devices) {
    if (device.outputStream != 0 && (device.isThere || uncertain_.contains(device.id)))
      facts.outputs.insert(device.uid);
  }
  return facts;
}

void Host::publish() {
  const auto before = snapshot();
  auto fresh = isSynced_ ? takeSnapshot(model_, volume_.pending(), ids_) : AudioSnapshot();
  // A device that goes may be the first sign that whoever brought them all is going. What goes with it is told with it:
  // by the time that the daemon has answered a question, all of it is known.
  for (const auto& device : before->devices) {
    if (!isSynced_ || !device.isThere || fresh.device(device.id) != nullptr) continue;
    const int question = connection_.sync();
    if (question >= 0) uncertain_[device.id] = question;
  }
  keepDevices(fresh, *before, [this](const auto& device) { return uncertain_.contains(device.id); });
  const auto verdict = default_.judge(factsOf(fresh), std::chrono::steady_clock::now());
  keepDevices(fresh, *before, [&](const auto& device) { return verdict.holds(device.uid); });
  setDefaultOutput(fresh, *before, verdict.name);
  fresh.settledDefault = verdict.isAwaited ? before->settledDefault : fresh.defaultOutput;
  fresh.choicesAnswered = before->choicesAnswered;
  fresh.refusedOutput = before->refusedOutput;
  if (verdict.outcome != DefaultOutput::Outcome::none) {
    ++fresh.choicesAnswered;
    const bool isRefused = verdict.outcome == DefaultOutput::Outcome::refused;
    fresh.refusedOutput = isRefused ? ids_.of(deviceKey(verdict.refused)) : 0;
    if (isRefused) {
      log_.error("the session manager did not take " + verdict.refused + " as the default output; it is " +
                 verdict.name.value_or("none"));
    }
  }
  if (verdict.validUntil) judgement_.armAt(nanosOf(*verdict.validUntil));
  tell(*before, std::make_shared<const AudioSnapshot>(std::move(fresh)));
}

void Host::tell(const AudioSnapshot& before, const std::shared_ptr<const AudioSnapshot>& fresh) {
  auto changes = differences(before, *fresh);
  const bool isAnother = before != *fresh;
  {
    const std::lock_guard lock(shared_.mutex);
    shared_.snapshot = fresh;
    shared_.graphRate = model_.graphRate();
    for (auto& [tap, rate] : shared_.tapRates) {
      const double now = director_.rate(tap);
      if (std::exchange(rate, now) != now) changes.push_back({tap, audio::tapFormat});
    }
  }
  listeners.tell(changes);
  if (isAnother) changed.raise();
  if (isSynced_ && (fresh->defaultOutput != 0 || fresh->devices.empty())) {
    // Last: whoever waits for it listens for what comes after it.
    const std::lock_guard lock(shared_.mutex);
    if (!std::exchange(shared_.isComplete, true)) shared_.complete.notify_all();
  }
}

// --- writes ----------------------------------------------------------------------------------------------------------

Status Host::writeDefaultOutput(AudioObjectID device) {
  const LoopLock lock(loop_);
  const auto current = snapshot();
  const auto* wanted = current->device(device);
  if (wanted == nullptr) return badObjectError;
  if (wanted->outputStream == 0) return illegalOperationError;
  if (!watcher_.hasMetadata() || !wanted->isThere) return hardwareNotRunningError;
  watcher_.write(0, "default.configured.audio.sink", "Spa:String:JSON", metadataFromName(wanted->uid));
  expectMissedMetadata();
  if (current->defaultOutput != device) {
    default_.choose(wanted->uid, std::chrono::steady_clock::now());
    publish();
  }
  return noErr;
}

Status Host::writeVolume(AudioObjectID device, std::uint32_t element, float scalar) {
  const LoopLock lock(loop_);
  const auto current = snapshot();
  const auto* wanted = current->device(device);
  if (wanted == nullptr) return badObjectError;
  return volume_.write(wanted->node, element, scalar) ? noErr : unknownPropertyError;
}

}  // namespace quillmere::pipewire
