#include "TapDirector.h"

#include <algorithm>
#include <utility>

#include "AudioSnapshot.h"

namespace quillmere::pipewire {
namespace {

// In ticks.
constexpr int glidePatience = 25;
constexpr int silencePatience = 30;
constexpr int returnPatience = 200;
constexpr int holdPatience = 250;
constexpr int lossPatience = 20;

/// After each cut the next one is waited for twice as long, up to 13 seconds.
constexpr int mostCuts = 6;
/// Half a minute at the usual length of a cycle: one that lasted so long was not cut off for good.
constexpr std::uint64_t calmCycles = 1400;

}  // namespace

struct TapDirector::Session {
  std::set<std::string> applications;
  std::optional<std::string> target;
  std::unique_ptr<TapPath> path;
  Phase phase = Phase::opening;
  std::string serial;
  /// Was released once and is taken up again.
  bool isAdopted = false;
  /// Runs although nothing is linked to it yet.
  bool isEager = false;
  /// The streams are moved at the next quiet moment.
  enum class Wait { none, asked, over } wait = Wait::none;
  /// Its release waits for a tap that is to take its applications over.
  bool isHeld = false;
  /// A glide waits for the first cycle.
  const IOBlock* gliding = nullptr;
  std::uint64_t cyclesSeen = 0;
  /// Serial of the output that it was opened for; empty where there was none.
  std::string output;
  int ticks = 0;
  /// Since it was seen to have failed, in ticks.
  int lostTicks = 0;
};

TapDirector::TapDirector(const GraphModel& model, StreamMover& mover, ObjectIDs& ids, PathFactory makePath,
                         WakeAt wakeAt, Logger log)
    : model_(model),
      mover_(mover),
      ids_(ids),
      makePath_(std::move(makePath)),
      wakeAt_(std::move(wakeAt)),
      log_(std::move(log)) {}

TapDirector::~TapDirector() = default;

// --- the port's calls ------------------------------------------------------------------------------------------------

Status TapDirector::createTap(const TapDescription& description, AudioObjectID& tap) {
  // An exclusive list, the whole machine but some, is nothing this host can tap.
  if (description.isExclusive || description.processes.empty()) return illegalOperationError;
  Tap made;
  for (const auto process : description.processes) {
    const auto key = ids_.keyOf(process);
    const auto identifier = key ? identifierOfKey(*key) : std::nullopt;
    if (!identifier) return badObjectError;
    made.applications.insert(*identifier);
  }
  made.uid = description.uuid.text();
  tap = ids_.fresh();
  taps_.emplace(tap, std::move(made));
  return noErr;
}

Status TapDirector::destroyTap(AudioObjectID tap) { return taps_.erase(tap) == 1 ? noErr : badObjectError; }

Status TapDirector::createDevice(const AggregateDescription& description, AudioObjectID& device) {
  if (description.taps.size() != 1) return illegalOperationError;
  const auto tap = std::find_if(taps_.begin(), taps_.end(),
                                [&](const auto& entry) { return entry.second.uid == description.taps.front().uid; });
  if (tap == taps_.end()) return badObjectError;
  Device made;
  made.applications = tap->second.applications;
  if (!description.followsDefaultOutput && !description.mainDeviceUID.empty()) made.target = description.mainDeviceUID;
  if (isRunning_) attach(made);
  device = ids_.fresh();
  devices_.emplace(device, std::move(made));
  graphChanged();
  return noErr;
}

Status TapDirector::destroyDevice(AudioObjectID device) {
  const auto found = devices_.find(device);
  if (found == devices_.end()) return badObjectError;
  detach(found->second, 1.0F);
  devices_.erase(found);
  return noErr;
}

Status TapDirector::createProc(AudioObjectID device, IOBlock block, IOProcID& proc) {
  const auto found = devices_.find(device);
  if (found == devices_.end()) return badObjectError;
  if (!block) return illegalOperationError;
  proc = nextProc_++;
  found->second.procs.emplace(proc, std::make_unique<IOBlock>(std::move(block)));
  return noErr;
}

Status TapDirector::destroyProc(AudioObjectID device, IOProcID proc) {
  const auto found = devices_.find(device);
  if (found == devices_.end() || !found->second.procs.contains(proc)) return badObjectError;
  if (found->second.running == proc) detach(found->second, 1.0F);
  found->second.procs.erase(proc);
  return noErr;
}

Status TapDirector::start(AudioObjectID device, IOProcID proc) {
  const auto found = devices_.find(device);
  if (found == devices_.end() || !found->second.procs.contains(proc)) return badObjectError;
  auto& starting = found->second;
  if (starting.running == proc) return noErr;
  if (starting.running != 0) return illegalOperationError;
  starting.running = proc;
  if (!starting.session && isRunning_) attach(starting);
  graphChanged();
  return noErr;
}

Status TapDirector::stop(AudioObjectID device, IOProcID proc, float appliedGain) {
  const auto found = devices_.find(device);
  if (found == devices_.end() || !found->second.procs.contains(proc)) return badObjectError;
  if (found->second.running != proc) return noErr;
  detach(found->second, appliedGain);
  return noErr;
}

bool TapDirector::isAlive(AudioObjectID device) const {
  const auto found = devices_.find(device);
  if (found == devices_.end() || !found->second.session) return false;
  return found->second.session->phase != Phase::opening || found->second.predecessor;
}

// --- the session manager's comings and goings ------------------------------------------------------------------------

void TapDirector::resume() {
  isRunning_ = true;
  for (auto& [id, device] : devices_) {
    if (!device.session) attach(device);
  }
  graphChanged();
}

void TapDirector::suspend() {
  isRunning_ = false;
  mover_.forget();
  inCharge_.clear();
  leaving_.clear();
  for (auto& [id, device] : devices_) {
    device.session.reset();
    device.predecessor.reset();
    device.cuts = 0;
  }
}

void TapDirector::giveEverythingBack() {
  isRunning_ = false;
  for (const auto& [application, session] : std::exchange(inCharge_, {})) mover_.release(application);
}

// --- sessions --------------------------------------------------------------------------------------------------------

void TapDirector::attach(Device& device) {
  // One that still releases the same applications to the same output is taken up where it stands.
  const auto adopted = std::find_if(leaving_.begin(), leaving_.end(), [&](const auto& session) {
    return session->phase == Phase::releasing && session->applications == device.applications &&
           session->target == device.target && !session->path->hasFailed();
  });
  if (adopted != leaving_.end()) {
    device.session = *adopted;
    device.session->isAdopted = true;
    device.session->isHeld = false;
    device.session->phase = Phase::ready;
    leaving_.erase(adopted);
    return;
  }
  if (auto session = openSession(device)) {
    device.session = std::move(session);
    // On its way to another output the sound must not grow loud on the old one.
    for (const auto& other : leaving_) {
      const bool isTakenOver =
          std::any_of(other->applications.begin(), other->applications.end(),
                      [&](const auto& application) { return device.applications.contains(application); });
      if (other->phase != Phase::releasing || !isTakenOver) continue;
      other->path->hold();
      other->isHeld = true;
      other->ticks = 0;
    }
  }
}

std::string TapDirector::wantedOutput(const Device& device) const {
  auto wanted = model_.outputSerial(device.target);
  return wanted.empty() && device.target ? model_.outputSerial(std::nullopt) : wanted;
}

std::shared_ptr<TapDirector::Session> TapDirector::openSession(const Device& device) {
  auto session = std::make_shared<Session>();
  session->applications = device.applications;
  session->target = device.target;
  session->output = wantedOutput(device);
  session->path =
      makePath_(session->output.empty() ? std::nullopt : std::optional(session->output), [this] { graphChanged(); });
  if (session->path && !session->path->hasFailed()) return session;
  log_.error("a tap's node could not be opened");
  return nullptr;
}

int TapDirector::patience(const Device& device) { return lossPatience << device.cuts; }

void TapDirector::followOutput(Device& device) {
  auto& session = *device.session;
  const auto wanted = wantedOutput(device);
  const bool isLost = session.path->hasFailed();
  // An adopted path still holds the streams; it is renewed once it is live.
  if (wanted.empty() || session.isAdopted || (wanted == session.output && !isLost)) return;
  if (wanted == session.output) {
    // Mostly the output's own end, and the default that takes its place hasn't been told yet.
    if (session.path->cycles() > calmCycles) device.cuts = 0;
    if (session.lostTicks < patience(device)) return;
    if (device.cuts == 0) log_.standard("a tap was cut off from its output; it is made again");
    device.cuts = std::min(device.cuts + 1, mostCuts);
  } else {
    device.cuts = 0;
  }
  auto fresh = openSession(device);
  if (!fresh) return;
  auto old = std::exchange(device.session, std::move(fresh));
  // The old one plays until the new one is ready.
  if (old->phase == Phase::live) device.predecessor = std::move(old);
}

void TapDirector::dismiss(Device& device, float appliedGain) {
  const auto session = std::exchange(device.predecessor, nullptr);
  if (!session) return;
  session->path->stop(appliedGain);
  session->gliding = nullptr;
  session->ticks = 0;
  session->cyclesSeen = session->path->cycles();
  session->wait = Session::Wait::none;
  session->phase = Phase::releasing;
  leaving_.push_back(session);
}

void TapDirector::detach(Device& device, float appliedGain) {
  device.running = 0;
  dismiss(device, appliedGain);
  if (!device.session) return;
  const auto session = std::exchange(device.session, nullptr);
  session->gliding = nullptr;
  session->ticks = 0;
  session->wait = Session::Wait::none;
  if (std::exchange(session->isEager, false)) session->path->calmDown();
  if (session->phase == Phase::live) {
    session->path->stop(appliedGain);
    session->cyclesSeen = session->path->cycles();
    session->phase = Phase::releasing;
  } else if (session->isAdopted) {
    session->phase = Phase::releasing;
  } else {
    session->phase = Phase::returning;
  }
  leaving_.push_back(session);
  dropReturned();
}

void TapDirector::goLive(Device& device) {
  auto& session = *device.session;
  const auto* block = device.procs.at(device.running).get();
  session.phase = Phase::live;
  session.ticks = 0;
  session.cyclesSeen = session.path->cycles();
  session.gliding = nullptr;
  if (device.predecessor) {
    // The block has one caller at a time; what the old streams still get of the sound stays silent until it has moved.
    auto* predecessor = device.predecessor.get();
    dismiss(device, 0.0F);
    predecessor->path->hold();
    session.path->startPlain(block);
    handOver(session);
    return;
  }

  const Session* before = nullptr;
  bool isHeard = false;
  for (const auto& application : session.applications) {
    if (auto* other = sessionInCharge(application); other != nullptr && other != &session) before = other;
    isHeard = isHeard || mover_.hasRunningStream(application);
  }
  if (std::exchange(session.isAdopted, false)) {
    session.path->startFromRelease(block);
  } else if (isHeard) {
    session.path->startFrom(block, before != nullptr ? before->path->releaseGain() : 1.0F);
    session.gliding = block;
  } else {
    // Nothing sounds that could click: the first frame plays at the block's own gain.
    session.path->startPlain(block);
  }
  handOver(session);
}

bool TapDirector::mustWait(Session& session) {
  if (session.wait == Session::Wait::over) {
    session.wait = Session::Wait::none;
    return false;
  }
  const auto quiet = session.path->quietMoment();
  if (quiet == 0) return session.isEager && session.ticks <= glidePatience;
  if (session.wait == Session::Wait::none) {
    session.wait = Session::Wait::asked;
    wakeAt_(quiet);
  }
  return true;
}

void TapDirector::moment() {
  const auto isOver = [](Session& session) {
    if (session.wait != Session::Wait::asked) return false;
    session.wait = Session::Wait::over;
    return true;
  };
  for (auto& [id, device] : devices_) {
    if (device.session) isOver(*device.session);
  }
  for (const auto& session : leaving_) {
    if (isOver(*session) && session->phase == Phase::releasing) beginReturn(*session);
  }
  graphChanged();
}

void TapDirector::handOver(Session& session) {
  for (const auto& application : session.applications) {
    inCharge_[application] = &session;
    mover_.claim(application, session.serial);
  }
  // Whoever has no application left only waits for the last link to go.
  for (const auto& other : leaving_) {
    const bool isInCharge =
        std::any_of(inCharge_.begin(), inCharge_.end(), [&](const auto& entry) { return entry.second == other.get(); });
    if (isInCharge || other->phase != Phase::releasing) continue;
    other->phase = Phase::returning;
    other->ticks = 0;
  }
}

void TapDirector::beginReturn(Session& session) {
  for (const auto& application : session.applications) {
    if (sessionInCharge(application) != &session) continue;
    inCharge_.erase(application);
    mover_.release(application);
  }
  session.phase = Phase::returning;
  session.ticks = 0;
}

void TapDirector::dropReturned() {
  std::erase_if(leaving_, [&](const auto& session) {
    if (session->phase != Phase::returning) return false;
    return session->serial.empty() || !model_.hasLinkInto(session->path->node()) || session->ticks > returnPatience;
  });
}

TapDirector::Session* TapDirector::sessionInCharge(const std::string& application) const {
  const auto found = inCharge_.find(application);
  return found == inCharge_.end() ? nullptr : found->second;
}

// --- progress --------------------------------------------------------------------------------------------------------

void TapDirector::graphChanged() {
  for (const auto& session : leaving_) session->path->graphChanged();
  for (auto& [id, device] : devices_) {
    if (device.predecessor) device.predecessor->path->graphChanged();
    if (!device.session) continue;
    device.session->path->graphChanged();
    followOutput(device);
    auto& session = *device.session;
    if (session.phase == Phase::opening && session.path->isConnected()) {
      const auto* node = model_.node(session.path->node());
      if (node != nullptr && !node->serial.empty()) {
        session.serial = node->serial;
        session.phase = Phase::ready;
        session.ticks = 0;
        // Where something sounds, the streams must run before it is moved to them, or the first cycle finds nobody
        // home. Not before they are linked: until then they would run on any other driver, and be moved.
        session.isEager = std::any_of(session.applications.begin(), session.applications.end(),
                                      [&](const auto& application) { return mover_.hasRunningStream(application); });
        if (session.isEager) session.path->wakeUp();
      }
    }
    if (session.phase == Phase::ready && device.running != 0 && (session.isAdopted || !mustWait(session))) {
      goLive(device);
      // What was adopted may still play on the output of before.
      followOutput(device);
    }
  }
  mover_.settle();
  dropReturned();
}

void TapDirector::tick() {
  bool isLate = false;
  for (auto& [id, device] : devices_) {
    if (!device.session) continue;
    auto& session = *device.session;
    ++session.ticks;
    if (session.path->hasFailed() && ++session.lostTicks == patience(device)) isLate = true;
    if (session.phase == Phase::ready && device.running != 0 && session.ticks > glidePatience) isLate = true;
    if (session.phase != Phase::live) continue;
    if (session.path->cycles() != session.cyclesSeen) session.gliding = nullptr;
    if (session.ticks <= glidePatience) continue;
    if (std::exchange(session.isEager, false)) session.path->calmDown();
    // What played has stopped meanwhile. When it plays again, there is nothing to glide from.
    if (session.gliding != nullptr) session.path->startPlain(std::exchange(session.gliding, nullptr));
  }
  if (isLate) graphChanged();
  const auto leaving = leaving_;
  for (const auto& session : leaving) {
    ++session->ticks;
    if (session->phase != Phase::releasing) continue;
    if (session->isHeld) {
      if (session->ticks <= holdPatience) continue;
      session->isHeld = false;
      session->path->stop(session->path->releaseGain());
    }
    const auto cycles = session->path->cycles();
    if (cycles != std::exchange(session->cyclesSeen, cycles)) session->ticks = 0;
    if (session->ticks > silencePatience || (session->path->isAtUnity() && !mustWait(*session))) beginReturn(*session);
  }
  dropReturned();
}

bool TapDirector::wantsTicks() const {
  if (!leaving_.empty()) return true;
  return std::any_of(devices_.begin(), devices_.end(), [](const auto& entry) {
    const auto& session = entry.second.session;
    return session && (session->gliding != nullptr || session->isEager ||
                       (session->path->hasFailed() && session->lostTicks < patience(entry.second)) ||
                       (session->phase == Phase::ready && entry.second.running != 0));
  });
}

}  // namespace quillmere::pipewire
