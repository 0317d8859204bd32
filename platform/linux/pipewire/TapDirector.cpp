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
/// How long a node that was made in vain is left to the session manager, which is busy with it.
constexpr int settlePatience = 30;

/// A person's changes are carried out at once. Where a program asks for more, each application has so many nodes in a
/// row, then one each time that so many ticks have passed, and what was wished in between is not carried out: every
/// node makes the session manager look at the whole graph, and one that goes while it is new confuses it.
constexpr int mostOpeningsAtOnce = 3;
constexpr int openingPace = 20;

/// After each cut the next one is waited for twice as long, up to 13 seconds.
constexpr int mostCuts = 6;
/// Half a minute at the usual length of a cycle: one that lasted so long was not cut off for good.
constexpr std::uint64_t calmCycles = 1400;

}  // namespace

struct TapDirector::Session {
  std::set<std::string> applications;
  Destination route;
  Destination destination;
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

TapDirector::TapDirector(const GraphModel& model, TapFeeder& feeder, OutputFinder& outputs, ObjectIDs& ids,
                         PathFactory makePath, WakeAt wakeAt, Logger log)
    : model_(model),
      feeder_(feeder),
      outputs_(outputs),
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
  made.tap = tap->first;
  made.applications = tap->second.applications;
  made.targetGain = description.targetGain;
  if (!description.followsDefaultOutput && !description.mainDeviceUID.empty()) made.route = description.mainDeviceUID;
  if (made.route) {
    for (const auto& application : made.applications) feeder_.forgetWishes(application);
  }
  made.lanes.try_emplace(made.route);
  device = ids_.fresh();
  auto& added = devices_.emplace(device, std::move(made)).first->second;
  if (isRunning_) {
    askForOutputs();
    attach(added, added.route, added.lanes.at(added.route));
  }
  graphChanged();
  return noErr;
}

Status TapDirector::destroyDevice(AudioObjectID device) {
  const auto found = devices_.find(device);
  if (found == devices_.end()) return badObjectError;
  detach(found->second, 1.0F);
  devices_.erase(found);
  if (isRunning_) askForOutputs();
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
  auto& own = starting.lanes.at(starting.route);
  if (!own.session && isRunning_) attach(starting, starting.route, own);
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

double TapDirector::rate(AudioObjectID tap) const {
  for (const auto& [id, device] : devices_) {
    if (device.tap != tap) continue;
    const auto& own = device.lanes.at(device.route);
    const auto played = own.session ? own.session->path->rate() : 0;
    if (played > 0) return played;
  }
  return model_.graphRate();
}

// --- the session manager's comings and goings ------------------------------------------------------------------------

void TapDirector::resume() {
  isRunning_ = true;
  askForOutputs();
  for (auto& [id, device] : devices_) {
    for (auto& [destination, lane] : device.lanes) {
      if (!lane.session) attach(device, destination, lane);
    }
  }
  graphChanged();
}

void TapDirector::suspend() {
  isRunning_ = false;
  feeder_.forget();
  inCharge_.clear();
  leaving_.clear();
  for (auto& [id, device] : devices_) {
    std::erase_if(device.lanes, [&](const auto& entry) { return entry.first != device.route; });
    auto& own = device.lanes.at(device.route);
    own.session.reset();
    own.predecessor.reset();
    own.cuts = 0;
    own.isPutOff = false;
  }
  openings_.clear();
  outputs_.forget();
}

void TapDirector::giveEverythingBack() {
  isRunning_ = false;
  for (const auto& [charge, session] : std::exchange(inCharge_, {})) feeder_.release(charge.first, charge.second);
}

// --- sessions --------------------------------------------------------------------------------------------------------

void TapDirector::askForOutputs() {
  std::set<Destination> needed;
  for (const auto& [id, device] : devices_) {
    for (const auto& [destination, lane] : device.lanes) needed.insert(destination);
  }
  outputs_.need(needed);
}

void TapDirector::attach(Device& device, const Destination& destination, Lane& lane) {
  lane.isPutOff = false;
  if (adopt(device, destination, lane)) return;
  if (!mayOpen(device)) {
    lane.isPutOff = true;
    holdOthers(device);
  } else if (auto session = openSession(device, destination)) {
    lane.session = std::move(session);
    holdOthers(device);
  }
}

bool TapDirector::adopt(const Device& device, const Destination& destination, Lane& lane) {
  const auto adopted = std::find_if(leaving_.begin(), leaving_.end(), [&](const auto& session) {
    // One that still releases, or one that was left before it was ready.
    const bool isOfUse = session->phase == Phase::releasing || session->serial.empty();
    return isOfUse && session->applications == device.applications && session->destination == destination &&
           !session->path->hasFailed();
  });
  if (adopted == leaving_.end()) return false;
  lane.session = *adopted;
  lane.session->route = device.route;
  leaving_.erase(adopted);
  if (lane.session->serial.empty()) {
    lane.session->phase = Phase::opening;
    lane.session->ticks = 0;
    holdOthers(device);
  } else {
    // It is taken up where it stands.
    lane.session->isAdopted = true;
    lane.session->isHeld = false;
    lane.session->phase = Phase::ready;
  }
  return true;
}

void TapDirector::holdOthers(const Device& device) {
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

void TapDirector::letGo(const std::set<std::string>& applications) {
  for (const auto& other : leaving_) {
    const bool isTheirs = std::any_of(other->applications.begin(), other->applications.end(),
                                      [&](const auto& application) { return applications.contains(application); });
    if (!isTheirs || !std::exchange(other->isHeld, false)) continue;
    other->path->stop(other->path->releaseGain());
    other->ticks = 0;
  }
}

bool TapDirector::mayOpen(const Device& device) const {
  return std::all_of(device.applications.begin(), device.applications.end(), [&](const auto& application) {
    const auto found = openings_.find(application);
    return found == openings_.end() || found->second.count < mostOpeningsAtOnce;
  });
}

bool TapDirector::countOpeningsDown() {
  bool mayOneMore = false;
  for (auto entry = openings_.begin(); entry != openings_.end();) {
    auto& [count, ticks] = entry->second;
    const bool isOver = ++ticks == openingPace;
    if (isOver) {
      ticks = 0;
      --count;
      mayOneMore = true;
    }
    entry = count == 0 ? openings_.erase(entry) : std::next(entry);
  }
  return mayOneMore;
}

std::shared_ptr<TapDirector::Session> TapDirector::openSession(const Device& device, const Destination& destination) {
  auto session = std::make_shared<Session>();
  session->applications = device.applications;
  session->route = device.route;
  session->destination = destination;
  session->output = outputs_.find(destination).output;
  session->path =
      makePath_(session->output.empty() ? std::nullopt : std::optional(session->output), [this] { graphChanged(); });
  for (const auto& application : device.applications) ++openings_[application].count;
  if (session->path && !session->path->hasFailed()) return session;
  log_.error("a tap's node could not be opened");
  return nullptr;
}

int TapDirector::patience(const Lane& lane) { return lossPatience << lane.cuts; }

void TapDirector::followOutput(Device& device, const Destination& destination, Lane& lane) {
  auto& session = *lane.session;
  const auto [isKnown, wanted] = outputs_.find(destination);
  const bool isLost = session.path->hasFailed();
  // It was opened by a guess, and nobody plays there but somebody else.
  const bool isRefused = isKnown && wanted.empty() && session.phase == Phase::opening && !session.output.empty();
  if (isRefused) {
    if (!mayOpen(device)) return;
    auto elsewhere = openSession(device, destination);
    if (!elsewhere) return;
    sendAway(std::exchange(lane.session, std::move(elsewhere)));
    return;
  }
  // An adopted path still holds the streams; it is renewed once it is live.
  if (wanted.empty() || session.isAdopted || (wanted == session.output && !isLost) || !mayOpen(device)) return;
  if (wanted == session.output) {
    // Mostly the output's own end, and what takes its place hasn't been told yet.
    if (session.path->cycles() > calmCycles) lane.cuts = 0;
    if (session.lostTicks < patience(lane)) return;
    if (lane.cuts == 0) log_.standard("a tap was cut off from its output; it is made again");
    lane.cuts = std::min(lane.cuts + 1, mostCuts);
  } else {
    // A guess is no reason to leave an output that plays.
    if (!isKnown && !isLost) return;
    lane.cuts = 0;
  }
  auto fresh = openSession(device, destination);
  if (!fresh) return;
  auto old = std::exchange(lane.session, std::move(fresh));
  if (old->phase == Phase::live) {
    // The old one plays until the new one is ready.
    lane.predecessor = std::move(old);
  } else {
    sendAway(std::move(old));
  }
}

void TapDirector::sendAway(std::shared_ptr<Session> session) {
  session->phase = Phase::returning;
  session->ticks = 0;
  leaving_.push_back(std::move(session));
}

void TapDirector::followStreams(Device& device) {
  const auto& own = device.lanes.at(device.route);
  // Without a gain to follow all streams play through the one IO block, wherever that is.
  if (device.running == 0 || device.targetGain == nullptr || !own.session || own.session->phase != Phase::live) return;
  std::set<Destination> bound{device.route};
  for (const auto& application : device.applications) bound.merge(feeder_.destinations(application, device.route));
  bool hasChanged = false;
  for (auto lane = device.lanes.begin(); lane != device.lanes.end();) {
    const auto& session = lane->second.session;
    const bool isUsed = session && session->phase == Phase::live && model_.hasLinkInto(session->path->node());
    if (isUsed || bound.contains(lane->first)) {
      ++lane;
      continue;
    }
    leave(lane->second, lane->second.follower->gain());
    lane = device.lanes.erase(lane);
    hasChanged = true;
  }
  for (const auto& destination : bound) {
    const auto [lane, isNew] = device.lanes.try_emplace(destination);
    if (!isNew) continue;
    lane->second.follower = std::make_unique<TapFollower>(device.targetGain, rate(device.tap));
    askForOutputs();
    attach(device, destination, lane->second);
    hasChanged = true;
  }
  if (hasChanged) askForOutputs();
}

void TapDirector::dismiss(Lane& lane, float appliedGain) {
  const auto session = std::exchange(lane.predecessor, nullptr);
  if (!session) return;
  session->path->stop(appliedGain);
  session->gliding = nullptr;
  session->ticks = 0;
  session->cyclesSeen = session->path->cycles();
  session->wait = Session::Wait::none;
  session->phase = Phase::releasing;
  leaving_.push_back(session);
}

void TapDirector::leave(Lane& lane, float appliedGain) {
  lane.isPutOff = false;
  dismiss(lane, appliedGain);
  if (!lane.session) return;
  const auto session = std::exchange(lane.session, nullptr);
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
}

void TapDirector::detach(Device& device, float appliedGain) {
  device.running = 0;
  for (auto& [destination, lane] : device.lanes) leave(lane, lane.follower ? lane.follower->gain() : appliedGain);
  // The followers' blocks are called no more.
  std::erase_if(device.lanes, [&](const auto& entry) { return entry.first != device.route; });
  letGo(device.applications);
  dropReturned();
}

const IOBlock* TapDirector::blockOf(const Device& device, const Lane& lane) {
  return lane.follower ? lane.follower->block() : device.procs.at(device.running).get();
}

bool TapDirector::isHeard(const Session& session) const {
  return std::any_of(session.applications.begin(), session.applications.end(), [&](const auto& application) {
    return feeder_.hasRunningStream(application, session.route, session.destination);
  });
}

bool TapDirector::isTapped(const Session& session) const {
  return std::any_of(session.applications.begin(), session.applications.end(), [&](const auto& application) {
    return feeder_.hasTappedStream(application, session.route, session.destination);
  });
}

void TapDirector::goLive(Device& device, Lane& lane) {
  auto& session = *lane.session;
  const auto* block = blockOf(device, lane);
  session.phase = Phase::live;
  session.ticks = 0;
  session.cyclesSeen = session.path->cycles();
  session.gliding = nullptr;
  if (lane.predecessor) {
    // The block has one caller at a time; what the old streams still get of the sound stays silent until it has moved.
    auto* predecessor = lane.predecessor.get();
    dismiss(lane, 0.0F);
    predecessor->path->hold();
    session.path->startPlain(block);
    handOver(session);
    return;
  }

  const Session* before = nullptr;
  for (const auto& [charge, other] : inCharge_) {
    if (session.applications.contains(charge.first) && other->phase == Phase::releasing) before = other;
  }
  if (std::exchange(session.isAdopted, false)) {
    session.path->startFromRelease(block);
  } else if ((before != nullptr || !isTapped(session)) && isHeard(session)) {
    session.path->startFrom(block, before != nullptr ? before->path->releaseGain() : 1.0F);
    session.gliding = block;
  } else {
    // It comes from another tap of its application, at the gain that it has here; or nothing sounds that could click.
    // The first frame plays at the block's own gain.
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
    for (auto& [destination, lane] : device.lanes) {
      if (lane.session) isOver(*lane.session);
    }
  }
  for (const auto& session : leaving_) {
    if (isOver(*session) && session->phase == Phase::releasing) beginReturn(*session);
  }
  graphChanged();
}

void TapDirector::handOver(Session& session) {
  for (const auto& application : session.applications) {
    inCharge_[{application, session.destination}] = &session;
    feeder_.claim(application, session.route, session.destination, session.serial);
  }
  // Whoever has no stream left only waits for the last link to go.
  for (const auto& other : leaving_) {
    if (other->phase != Phase::releasing) continue;
    bool isInCharge = false;
    for (const auto& application : other->applications) {
      const Charge charge{application, other->destination};
      if (sessionInCharge(charge) != other.get()) continue;
      if (session.applications.contains(application) &&
          !feeder_.destinations(application, session.route).contains(other->destination)) {
        inCharge_.erase(charge);
        feeder_.release(application, other->destination);
      } else {
        isInCharge = true;
      }
    }
    if (isInCharge) continue;
    other->phase = Phase::returning;
    other->ticks = 0;
  }
}

void TapDirector::beginReturn(Session& session) {
  for (const auto& application : session.applications) {
    const Charge charge{application, session.destination};
    if (sessionInCharge(charge) != &session) continue;
    inCharge_.erase(charge);
    feeder_.release(application, session.destination);
  }
  session.phase = Phase::returning;
  session.ticks = 0;
}

void TapDirector::dropReturned() {
  std::erase_if(leaving_, [&](const auto& session) {
    if (session->phase != Phase::returning) return false;
    if (session->serial.empty()) {
      return session->path->isConnected() || session->path->hasFailed() || session->ticks > settlePatience;
    }
    return !model_.hasLinkInto(session->path->node()) || session->ticks > returnPatience;
  });
}

TapDirector::Session* TapDirector::sessionInCharge(const Charge& charge) const {
  const auto found = inCharge_.find(charge);
  return found == inCharge_.end() ? nullptr : found->second;
}

// --- progress --------------------------------------------------------------------------------------------------------

void TapDirector::progress(Device& device, const Destination& destination, Lane& lane) {
  if (lane.predecessor) lane.predecessor->path->graphChanged();
  if (lane.isPutOff && isRunning_ && mayOpen(device)) attach(device, destination, lane);
  if (!lane.session) return;
  lane.session->path->graphChanged();
  followOutput(device, destination, lane);
  if (!lane.session) return;
  auto& session = *lane.session;
  if (session.phase == Phase::opening && session.path->isConnected() && outputs_.find(destination).isKnown) {
    const auto* node = model_.node(session.path->node());
    if (node != nullptr && !node->serial.empty()) {
      session.serial = node->serial;
      session.phase = Phase::ready;
      session.ticks = 0;
      // Where something sounds, the streams must run before it is moved to them, or the first cycle finds nobody
      // home. Not before they are linked: until then they would run on any other driver, and be moved.
      session.isEager = isHeard(session);
      if (session.isEager) session.path->wakeUp();
    }
  }
  if (session.phase == Phase::ready && device.running != 0 && (session.isAdopted || !mustWait(session))) {
    goLive(device, lane);
    // What was adopted may still play on the output of before.
    followOutput(device, destination, lane);
  }
  if (lane.follower && session.path->rate() > 0) lane.follower->setRate(session.path->rate());
}

void TapDirector::graphChanged() {
  for (const auto& session : leaving_) session->path->graphChanged();
  for (auto& [id, device] : devices_) {
    for (auto& [destination, lane] : device.lanes) progress(device, destination, lane);
    if (isRunning_) followStreams(device);
  }
  feeder_.settle();
  dropReturned();
}

void TapDirector::tick() {
  bool isLate = countOpeningsDown();
  const auto tickLane = [&](const Device& device, Lane& lane) {
    auto& session = *lane.session;
    ++session.ticks;
    if (session.path->hasFailed() && ++session.lostTicks == patience(lane)) isLate = true;
    if (session.phase == Phase::ready && device.running != 0 && session.ticks > glidePatience) isLate = true;
    if (session.phase != Phase::live) return;
    if (session.path->cycles() != session.cyclesSeen) session.gliding = nullptr;
    if (session.ticks <= glidePatience) return;
    if (std::exchange(session.isEager, false)) session.path->calmDown();
    // What played has stopped meanwhile. When it plays again, there is nothing to glide from.
    if (session.gliding != nullptr) session.path->startPlain(std::exchange(session.gliding, nullptr));
  };
  for (auto& [id, device] : devices_) {
    for (auto& [destination, lane] : device.lanes) {
      if (lane.session) tickLane(device, lane);
    }
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
  if (!leaving_.empty() || !openings_.empty()) return true;
  const auto isWaited = [](const Device& device, const Lane& lane) {
    const auto& session = lane.session;
    return session && (session->gliding != nullptr || session->isEager ||
                       (session->path->hasFailed() && session->lostTicks < patience(lane)) ||
                       (session->phase == Phase::ready && device.running != 0));
  };
  return std::any_of(devices_.begin(), devices_.end(), [&](const auto& entry) {
    return std::any_of(entry.second.lanes.begin(), entry.second.lanes.end(),
                       [&](const auto& lane) { return isWaited(entry.second, lane.second); });
  });
}

}  // namespace quillmere::pipewire
