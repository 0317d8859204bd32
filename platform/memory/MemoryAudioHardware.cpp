// The in-memory audio object model. One mutex guards the whole world; listeners and IO blocks run outside it.
#include "platform/memory/MemoryAudioHardware.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>
#include <utility>

namespace quillmere {

namespace {

using Method = MemoryAudioHardware::Method;

constexpr PropertyAddress globalAddress(std::uint32_t selector) { return {selector, audio::scopeGlobal, 0}; }

constexpr std::uint32_t listSize(std::size_t entries) {
  return static_cast<std::uint32_t>(entries * sizeof(AudioObjectID));
}

struct Failure {
  MemoryAudioHardware::Match match;
  Status status = noErr;
  int remaining = 0;
  int skip = 0;
};

struct Listener {
  AudioObjectID object = 0;
  PropertyAddress address;
  PropertyListener block;
};

/// One installed IO block. Its mutex is held for the length of a cycle, so that a stop waits for the cycle's end.
struct InstalledProc {
  std::mutex mutex;
  bool running = false;
  IOBlock block;
  std::string queueLabel;
};

struct Tap {
  TapDescription description;
  AudioStreamBasicDescription format;
  bool exists = true;
};

struct Aggregate {
  AggregateDescription description;
  /// What its taps take in.
  std::vector<AudioObjectID> processes;
  MonotonicTime aliveAt;
  bool exists = true;
  std::map<IOProcID, std::shared_ptr<InstalledProc>> procs;
  std::string queueLabel;
  std::optional<float> appliedGain;
  std::optional<MonotonicTime> stoppedAt;
};

/// Constant samples to and from nowhere.
void playConstant(const IOBlock& block, float sample) {
  std::array<float, 32> input{};
  std::array<float, 32> output{};
  input.fill(sample);
  AudioBuffer in{2, sizeof input, input.data()};
  AudioBuffer out{2, sizeof output, output.data()};
  block({.buffers = {&in, 1}}, {.buffers = {&out, 1}});
}

}  // namespace

struct MemoryAudioHardware::World : std::enable_shared_from_this<World> {
  World(Executor& executor, const Clocks& time) : listenerExecutor(executor), clocks(time) {}

  // All below: with the mutex held; those who follow the changes take locks of their own and no other.

  /// Records the call; the status to answer with, if a script says so.
  std::optional<Status> begin(Method method, AudioObjectID object, const PropertyAddress& address) {
    calls.push_back({method, object, address});
    for (auto& failure : failures) {
      const auto& match = failure.match;
      if (failure.remaining == 0 || match.method != method || match.object.value_or(object) != object ||
          match.selector.value_or(address.selector) != address.selector ||
          match.element.value_or(address.element) != address.element) {
        continue;
      }
      if (failure.skip > 0) {
        --failure.skip;
        changes.raise();
        continue;
      }
      if (failure.remaining > 0) --failure.remaining;
      // The next call may go well.
      changes.raise();
      return failure.status;
    }
    return std::nullopt;
  }

  MemoryVolumeElement* volumeElement(AudioObjectID object, const PropertyAddress& address) {
    if (address.selector != audio::volumeScalar || address.scope != audio::scopeOutput) return nullptr;
    auto* device = findDevice(object);
    if (device == nullptr) return nullptr;
    const auto element = device->volume.find(address.element);
    return element == device->volume.end() ? nullptr : &element->second;
  }

  /// Listed, or the default that has gone.
  MemoryDevice* findDevice(AudioObjectID object) {
    const auto found = devices.find(object);
    if (found != devices.end()) return &found->second;
    return departed && departed->first == object ? &departed->second : nullptr;
  }
  const MemoryDevice* findDevice(AudioObjectID object) const { return const_cast<World*>(this)->findDevice(object); }

  Status unknown(AudioObjectID object) const {
    const bool exists = object == systemObjectID || findDevice(object) != nullptr || processes.contains(object) ||
                        findTap(object) != nullptr || findAggregate(object) != nullptr;
    return exists ? unknownPropertyError : badObjectError;
  }

  const Tap* findTap(AudioObjectID object) const {
    const auto found = taps.find(object);
    return found == taps.end() || !found->second.exists ? nullptr : &found->second;
  }

  const Aggregate* findAggregate(AudioObjectID object) const {
    const auto found = aggregates.find(object);
    return found == aggregates.end() || !found->second.exists ? nullptr : &found->second;
  }
  Aggregate* findAggregate(AudioObjectID object) {
    return const_cast<Aggregate*>(std::as_const(*this).findAggregate(object));
  }

  std::shared_ptr<InstalledProc> findProc(AudioObjectID device, IOProcID proc) const {
    const auto* aggregate = findAggregate(device);
    if (aggregate == nullptr) return nullptr;
    const auto found = aggregate->procs.find(proc);
    return found == aggregate->procs.end() ? nullptr : found->second;
  }

  /// 0 for none.
  AudioObjectID outputOf(const Aggregate& aggregate) const {
    const auto& description = aggregate.description;
    const auto standing = devices.contains(defaultDevice) ? defaultDevice : 0;
    if (outputsFall && description.followsDefaultOutput) return standing;
    const auto found = std::find_if(devices.begin(), devices.end(),
                                    [&](const auto& entry) { return entry.second.uid == description.mainDeviceUID; });
    if (found != devices.end()) return found->first;
    return outputsFall ? standing : 0;
  }

  bool isAlive(const Aggregate& aggregate) const {
    return outputOf(aggregate) != 0 && clocks.monotonicNow() >= aggregate.aliveAt;
  }

  template <typename Map>
  static std::vector<AudioObjectID> keysOf(const Map& map) {
    std::vector<AudioObjectID> keys;
    keys.reserve(map.size());
    for (const auto& entry : map) keys.push_back(entry.first);
    return keys;
  }

  /// Tells every listener of the property, later, on the listeners' executor; one removed meanwhile is not told.
  void tell(AudioObjectID object, const PropertyAddress& address) {
    changes.raise();
    for (const auto& listener : listeners) {
      if (listener.object != object || listener.address != address) continue;
      listenerExecutor.post([weakWorld = weak_from_this(), object, address, block = listener.block] {
        const auto world = weakWorld.lock();
        if (!world) return;
        {
          const std::lock_guard lock(world->mutex);
          if (!world->isListening(object, address, block)) return;
        }
        (*block)();
      });
    }
  }

  bool isListening(AudioObjectID object, const PropertyAddress& address, const PropertyListener& block) const {
    return std::any_of(listeners.begin(), listeners.end(), [&](const Listener& listener) {
      return listener.object == object && listener.address == address && listener.block == block;
    });
  }

  /// What the taps in an aggregate take in; the newest tap is looked at first, being what is asked for.
  std::vector<AudioObjectID> processesOf(const AggregateDescription& description) const {
    std::vector<AudioObjectID> found;
    for (const auto& wanted : description.taps) {
      const auto tap = std::find_if(taps.rbegin(), taps.rend(), [&](const auto& entry) {
        return entry.second.exists && entry.second.description.uuid.text() == wanted.uid;
      });
      if (tap == taps.rend()) continue;
      const auto& tapped = tap->second.description.processes;
      found.insert(found.end(), tapped.begin(), tapped.end());
    }
    return found;
  }

  /// The process through which an aggregate hears sound now; 0 if there is none.
  AudioObjectID soundingProcess(const Aggregate& aggregate) const {
    const auto sounds = [this](AudioObjectID object) {
      const auto found = processes.find(object);
      return found != processes.end() && found->second.isRunningOutput;
    };
    const auto found = std::find_if(aggregate.processes.begin(), aggregate.processes.end(), sounds);
    return found == aggregate.processes.end() ? 0 : *found;
  }

  /// Without the mutex.
  void driveCycles(Duration length, float sample) {
    std::vector<std::shared_ptr<InstalledProc>> procs;
    {
      const std::lock_guard lock(mutex);
      for (const auto id : started) {
        const auto* aggregate = findAggregate(id);
        const auto process = aggregate == nullptr ? 0 : soundingProcess(*aggregate);
        if (process == 0) continue;
        cycles.push_back({process, id, clocks.monotonicNow()});
        for (const auto& entry : aggregate->procs) procs.push_back(entry.second);
      }
    }
    for (const auto& proc : procs) {
      const std::lock_guard cycle(proc->mutex);
      if (proc->running) playConstant(proc->block, sample);
    }
    listenerExecutor.postAfter(length, [weakWorld = weak_from_this(), length, sample] {
      if (const auto world = weakWorld.lock()) world->driveCycles(length, sample);
    });
  }

  /// The blocks of an aggregate run no more.
  void noteStop(AudioObjectID device) {
    started.erase(device);
    const auto found = aggregates.find(device);
    if (found != aggregates.end() && !found->second.stoppedAt) found->second.stoppedAt = clocks.monotonicNow();
  }

  void changeDefault(AudioObjectID device) {
    if (defaultDevice == device) return;
    defaultDevice = device;
    departed.reset();
    changes.raise();
    // While a choice is awaited, it is what everybody reads.
    if (awaitedDefault == 0) tell(systemObjectID, globalAddress(audio::defaultOutputDevice));
  }

  void answerAwaited(bool takes) {
    const auto chosen = std::exchange(awaitedDefault, 0);
    if (chosen == 0) return;
    refusedDefault = takes ? 0 : chosen;
    if (takes) {
      defaultDevice = chosen;
      departed.reset();
    }
    tell(systemObjectID, globalAddress(audio::defaultOutputDevice));
    if (!takes) tell(systemObjectID, globalAddress(audio::refusedDefaultOutput));
  }

  AudioObjectID readableDefault() const { return awaitedDefault != 0 ? awaitedDefault : defaultDevice; }

  mutable std::mutex mutex;
  ChangeSignal changes;
  bool tellsChanges = true;
  Executor& listenerExecutor;
  const Clocks& clocks;
  AudioObjectID lastID = 100;
  IOProcID lastProc = 0;
  std::map<AudioObjectID, MemoryDevice> devices;
  std::map<AudioObjectID, MemoryProcess> processes;
  std::map<AudioObjectID, Tap> taps;
  std::map<AudioObjectID, Aggregate> aggregates;
  /// Those with a block that runs.
  std::set<AudioObjectID> started;
  std::vector<MemoryCycle> cycles;
  AudioObjectID defaultDevice = 0;
  /// The default that has gone, while nothing has taken its place.
  std::optional<std::pair<AudioObjectID, MemoryDevice>> departed;
  bool leavesGaps = false;
  DefaultWrites defaultWrites = DefaultWrites::taken;
  /// Written and not answered; 0 for none.
  AudioObjectID awaitedDefault = 0;
  AudioObjectID refusedDefault = 0;
  bool outputsFall = false;
  AudioStreamBasicDescription tapFormat{48000.0, fourCC("lpcm"), 9, 8, 1, 8, 2, 32};
  Duration aliveDelay{};
  std::vector<Listener> listeners;
  std::vector<Failure> failures;
  std::vector<Call> calls;
};

MemoryAudioHardware::MemoryAudioHardware(Executor& listenerExecutor, const Clocks& clocks)
    : world_(std::make_shared<World>(listenerExecutor, clocks)) {}

MemoryAudioHardware::~MemoryAudioHardware() = default;

void MemoryAudioHardware::setTellsChanges(bool tells) {
  const std::lock_guard lock(world_->mutex);
  world_->tellsChanges = tells;
}

const ChangeSignal& MemoryAudioHardware::changes() const {
  const std::lock_guard lock(world_->mutex);
  return world_->tellsChanges ? world_->changes : ChangeSignal::absent();
}

// Properties.

bool MemoryAudioHardware::hasProperty(AudioObjectID object, const PropertyAddress& address) const {
  const std::lock_guard lock(world_->mutex);
  if (world_->begin(Method::hasProperty, object, address)) return false;
  if (address.selector == audio::volumeScalar) return world_->volumeElement(object, address) != nullptr;
  static constexpr std::array ofSystem{audio::devices, audio::defaultOutputDevice, audio::refusedDefaultOutput,
                                       audio::processObjectList};
  static constexpr std::array ofDevice{audio::deviceUID, audio::objectName, audio::streams, audio::deviceIsAlive,
                                       audio::transportType};
  static constexpr std::array ofProcess{audio::processBundleID, audio::processPID, audio::processIsRunningOutput,
                                        audio::processIsRunningInput};
  const auto isIn = [&](const auto& selectors) {
    return std::find(selectors.begin(), selectors.end(), address.selector) != selectors.end();
  };
  if (object == systemObjectID) return isIn(ofSystem);
  if (world_->findDevice(object) != nullptr) return isIn(ofDevice);
  if (world_->processes.contains(object)) return isIn(ofProcess);
  if (world_->findTap(object) != nullptr) return address.selector == audio::tapFormat;
  return world_->findAggregate(object) != nullptr && address.selector == audio::deviceIsAlive;
}

Status MemoryAudioHardware::isPropertySettable(AudioObjectID object, const PropertyAddress& address,
                                               bool& settable) const {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::isPropertySettable, object, address)) return *status;
  if (const auto* element = world_->volumeElement(object, address)) {
    settable = element->settable && world_->devices.contains(object);
    return noErr;
  }
  const auto status = world_->unknown(object);
  if (status == badObjectError) return status;
  settable = object == systemObjectID && address.selector == audio::defaultOutputDevice;
  return noErr;
}

Status MemoryAudioHardware::propertyDataSize(AudioObjectID object, const PropertyAddress& address,
                                             std::uint32_t& byteCount) const {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::propertyDataSize, object, address)) return *status;
  if (object == systemObjectID && address.selector == audio::devices) {
    byteCount = listSize(world_->devices.size());
    return noErr;
  }
  if (object == systemObjectID && address.selector == audio::processObjectList) {
    byteCount = listSize(world_->processes.size());
    return noErr;
  }
  const auto* device = world_->findDevice(object);
  if (device != nullptr && address.selector == audio::streams) {
    byteCount = address.scope == audio::scopeOutput ? listSize(device->outputStreamCount) : 0;
    return noErr;
  }
  return world_->unknown(object);
}

Status MemoryAudioHardware::readUInt32(AudioObjectID object, const PropertyAddress& address,
                                       std::uint32_t& value) const {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::readUInt32, object, address)) return *status;
  if (object == systemObjectID && address.selector == audio::defaultOutputDevice) {
    value = world_->readableDefault();
    return noErr;
  }
  if (object == systemObjectID && address.selector == audio::refusedDefaultOutput) {
    value = world_->refusedDefault;
    return noErr;
  }
  if (const auto* device = world_->findDevice(object)) {
    if (address.selector == audio::transportType) {
      value = device->transport;
      return noErr;
    }
    if (address.selector == audio::deviceIsAlive) {
      value = device->isAlive ? 1 : 0;
      return noErr;
    }
  }
  if (const auto process = world_->processes.find(object); process != world_->processes.end()) {
    if (address.selector == audio::processIsRunningOutput) {
      value = process->second.isRunningOutput ? 1 : 0;
      return noErr;
    }
    if (address.selector == audio::processIsRunningInput) {
      value = process->second.isRunningInput ? 1 : 0;
      return noErr;
    }
  }
  if (const auto* aggregate = world_->findAggregate(object);
      aggregate != nullptr && address.selector == audio::deviceIsAlive) {
    value = world_->isAlive(*aggregate) ? 1 : 0;
    return noErr;
  }
  return world_->unknown(object);
}

Status MemoryAudioHardware::readInt32(AudioObjectID object, const PropertyAddress& address, std::int32_t& value) const {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::readInt32, object, address)) return *status;
  const auto process = world_->processes.find(object);
  if (process != world_->processes.end() && address.selector == audio::processPID) {
    value = process->second.pid;
    return noErr;
  }
  return world_->unknown(object);
}

Status MemoryAudioHardware::readFloat32(AudioObjectID object, const PropertyAddress& address, float& value) const {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::readFloat32, object, address)) return *status;
  if (const auto* element = world_->volumeElement(object, address)) {
    if (!element->readable) return unspecifiedError;
    value = element->value;
    return noErr;
  }
  return world_->unknown(object);
}

Status MemoryAudioHardware::readString(AudioObjectID object, const PropertyAddress& address,
                                       std::optional<std::string>& value) const {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::readString, object, address)) return *status;
  if (const auto* device = world_->findDevice(object)) {
    if (address.selector == audio::deviceUID) {
      value = device->uid;
      return noErr;
    }
    if (address.selector == audio::objectName) {
      value = device->name;
      return noErr;
    }
  }
  const auto process = world_->processes.find(object);
  if (process != world_->processes.end() && address.selector == audio::processBundleID) {
    value = process->second.bundleID;
    return noErr;
  }
  return world_->unknown(object);
}

Status MemoryAudioHardware::readObjectIDs(AudioObjectID object, const PropertyAddress& address,
                                          std::vector<AudioObjectID>& value) const {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::readObjectIDs, object, address)) return *status;
  if (object == systemObjectID && address.selector == audio::devices) {
    value = World::keysOf(world_->devices);
    return noErr;
  }
  if (object == systemObjectID && address.selector == audio::processObjectList) {
    value = World::keysOf(world_->processes);
    return noErr;
  }
  return world_->unknown(object);
}

Status MemoryAudioHardware::readFormat(AudioObjectID object, const PropertyAddress& address,
                                       AudioStreamBasicDescription& value) const {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::readFormat, object, address)) return *status;
  const auto* tap = world_->findTap(object);
  if (tap == nullptr || address.selector != audio::tapFormat) return world_->unknown(object);
  value = tap->format;
  return noErr;
}

Status MemoryAudioHardware::writeUInt32(AudioObjectID object, const PropertyAddress& address, std::uint32_t value) {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::writeUInt32, object, address)) return *status;
  if (object != systemObjectID || address.selector != audio::defaultOutputDevice) return world_->unknown(object);
  const auto device = world_->devices.find(value);
  if (device == world_->devices.end()) return badObjectError;
  if (device->second.outputStreamCount == 0) return illegalOperationError;
  if (world_->defaultWrites == DefaultWrites::taken) {
    world_->awaitedDefault = 0;
    world_->changeDefault(value);
  } else if (world_->defaultWrites == DefaultWrites::awaited && world_->readableDefault() != value) {
    world_->awaitedDefault = value;
    world_->changes.raise();
  }
  return noErr;
}

Status MemoryAudioHardware::writeFloat32(AudioObjectID object, const PropertyAddress& address, float value) {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::writeFloat32, object, address)) return *status;
  auto* element = world_->volumeElement(object, address);
  if (element == nullptr) return world_->unknown(object);
  if (!element->settable || !world_->devices.contains(object)) return illegalOperationError;
  element->value = value;
  world_->tell(object, address);
  return noErr;
}

Status MemoryAudioHardware::addPropertyListener(AudioObjectID object, const PropertyAddress& address,
                                                PropertyListener listener) {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::addPropertyListener, object, address)) return *status;
  if (world_->unknown(object) == badObjectError) return badObjectError;
  world_->listeners.push_back({object, address, std::move(listener)});
  return noErr;
}

Status MemoryAudioHardware::removePropertyListener(AudioObjectID object, const PropertyAddress& address,
                                                   const PropertyListener& listener) {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::removePropertyListener, object, address)) return *status;
  std::erase_if(world_->listeners, [&](const Listener& entry) {
    return entry.object == object && entry.address == address && entry.block == listener;
  });
  return noErr;
}

// Taps, aggregates, IO.

Status MemoryAudioHardware::createProcessTap(const TapDescription& description, AudioObjectID& tap) {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::createProcessTap, 0, {0, 0, 0})) return *status;
  tap = ++world_->lastID;
  world_->taps.emplace(tap, Tap{description, world_->tapFormat});
  return noErr;
}

Status MemoryAudioHardware::destroyProcessTap(AudioObjectID tap) {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::destroyProcessTap, tap, {0, 0, 0})) return *status;
  if (world_->findTap(tap) == nullptr) return badObjectError;
  world_->taps.at(tap).exists = false;
  return noErr;
}

Status MemoryAudioHardware::createAggregateDevice(const AggregateDescription& description, AudioObjectID& device) {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::createAggregateDevice, 0, {0, 0, 0})) return *status;
  for (const auto& wanted : description.taps) {
    const bool isThere = std::any_of(world_->taps.begin(), world_->taps.end(), [&](const auto& entry) {
      return entry.second.exists && entry.second.description.uuid.text() == wanted.uid;
    });
    if (!isThere) return badObjectError;
  }
  device = ++world_->lastID;
  Aggregate aggregate;
  aggregate.description = description;
  aggregate.processes = world_->processesOf(description);
  aggregate.aliveAt = world_->clocks.monotonicNow() + world_->aliveDelay;
  world_->aggregates.emplace(device, std::move(aggregate));
  return noErr;
}

Status MemoryAudioHardware::destroyAggregateDevice(AudioObjectID device) {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::destroyAggregateDevice, device, {0, 0, 0})) return *status;
  auto* aggregate = world_->findAggregate(device);
  if (aggregate == nullptr) return badObjectError;
  aggregate->exists = false;
  world_->noteStop(device);
  aggregate->procs.clear();
  return noErr;
}

Status MemoryAudioHardware::createIOProc(AudioObjectID device, const std::string& queueLabel, IOBlock block,
                                         IOProcID& proc) {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::createIOProc, device, {0, 0, 0})) return *status;
  auto* aggregate = world_->findAggregate(device);
  if (aggregate == nullptr) return badObjectError;
  if (!block) return illegalOperationError;
  auto installed = std::make_shared<InstalledProc>();
  installed->block = std::move(block);
  installed->queueLabel = queueLabel;
  aggregate->queueLabel = queueLabel;
  proc = ++world_->lastProc;
  aggregate->procs.emplace(proc, std::move(installed));
  return noErr;
}

Status MemoryAudioHardware::destroyIOProc(AudioObjectID device, IOProcID proc) {
  const std::lock_guard lock(world_->mutex);
  if (const auto status = world_->begin(Method::destroyIOProc, device, {0, 0, 0})) return *status;
  auto* aggregate = world_->findAggregate(device);
  return aggregate != nullptr && aggregate->procs.erase(proc) != 0 ? noErr : badObjectError;
}

Status MemoryAudioHardware::startDevice(AudioObjectID device, IOProcID proc) {
  std::shared_ptr<InstalledProc> installed;
  {
    const std::lock_guard lock(world_->mutex);
    if (const auto status = world_->begin(Method::startDevice, device, {0, 0, 0})) return *status;
    installed = world_->findProc(device, proc);
    if (installed) world_->started.insert(device);
    world_->changes.raise();
  }
  if (!installed) return badObjectError;
  const std::lock_guard cycle(installed->mutex);
  installed->running = true;
  return noErr;
}

Status MemoryAudioHardware::stopDevice(AudioObjectID device, IOProcID proc, float appliedGain) {
  std::shared_ptr<InstalledProc> installed;
  {
    const std::lock_guard lock(world_->mutex);
    if (const auto status = world_->begin(Method::stopDevice, device, {0, 0, 0})) return *status;
    installed = world_->findProc(device, proc);
    if (!installed) return badObjectError;
    world_->findAggregate(device)->appliedGain = appliedGain;
    world_->noteStop(device);
  }
  const std::lock_guard cycle(installed->mutex);
  installed->running = false;
  return noErr;
}

// Devices.

AudioObjectID MemoryAudioHardware::addDevice(MemoryDevice device) {
  const std::lock_guard lock(world_->mutex);
  const auto id = ++world_->lastID;
  world_->devices.emplace(id, std::move(device));
  world_->tell(systemObjectID, globalAddress(audio::devices));
  return id;
}

void MemoryAudioHardware::removeDevice(AudioObjectID device) {
  const std::lock_guard lock(world_->mutex);
  auto gone = world_->devices.extract(device);
  if (gone.empty()) return;
  std::erase_if(world_->listeners, [&](const Listener& listener) { return listener.object == device; });
  world_->tell(systemObjectID, globalAddress(audio::devices));
  if (world_->awaitedDefault == device) world_->answerAwaited(false);
  if (world_->defaultDevice != device) return;
  if (world_->leavesGaps) {
    gone.mapped().isAlive = false;
    world_->departed.emplace(device, std::move(gone.mapped()));
    return;
  }
  const auto next = std::find_if(world_->devices.begin(), world_->devices.end(),
                                 [](const auto& entry) { return entry.second.outputStreamCount > 0; });
  world_->changeDefault(next == world_->devices.end() ? 0 : next->first);
}

void MemoryAudioHardware::updateDevice(AudioObjectID device, MemoryDevice description) {
  const std::lock_guard lock(world_->mutex);
  const auto found = world_->devices.find(device);
  if (found == world_->devices.end()) return;
  const auto before = std::exchange(found->second, std::move(description));
  world_->changes.raise();
  for (const auto& [element, now] : found->second.volume) {
    const auto was = before.volume.find(element);
    if (was == before.volume.end() || was->second.value != now.value) {
      world_->tell(device, {audio::volumeScalar, audio::scopeOutput, element});
    }
  }
}

std::optional<MemoryDevice> MemoryAudioHardware::device(AudioObjectID device) const {
  const std::lock_guard lock(world_->mutex);
  const auto found = world_->devices.find(device);
  if (found == world_->devices.end()) return std::nullopt;
  return found->second;
}

void MemoryAudioHardware::setDefaultOutput(AudioObjectID device) {
  const std::lock_guard lock(world_->mutex);
  world_->changeDefault(device);
}

AudioObjectID MemoryAudioHardware::defaultOutput() const {
  const std::lock_guard lock(world_->mutex);
  return world_->readableDefault();
}

void MemoryAudioHardware::setLeavesGaps(bool leaves) {
  const std::lock_guard lock(world_->mutex);
  world_->leavesGaps = leaves;
}

void MemoryAudioHardware::setVolume(AudioObjectID device, std::uint32_t element, float value) {
  const std::lock_guard lock(world_->mutex);
  const PropertyAddress address{audio::volumeScalar, audio::scopeOutput, element};
  auto* found = world_->volumeElement(device, address);
  if (found == nullptr) return;
  found->value = value;
  world_->tell(device, address);
}

std::optional<float> MemoryAudioHardware::volume(AudioObjectID device, std::uint32_t element) const {
  const std::lock_guard lock(world_->mutex);
  const auto* found = world_->volumeElement(device, {audio::volumeScalar, audio::scopeOutput, element});
  if (found == nullptr) return std::nullopt;
  return found->value;
}

void MemoryAudioHardware::setDefaultWrites(DefaultWrites answer) {
  const std::lock_guard lock(world_->mutex);
  world_->defaultWrites = answer;
}

void MemoryAudioHardware::answerDefaultWrite(bool takes) {
  const std::lock_guard lock(world_->mutex);
  world_->answerAwaited(takes);
}

// Processes.

AudioObjectID MemoryAudioHardware::addProcess(MemoryProcess process) {
  const std::lock_guard lock(world_->mutex);
  const auto id = ++world_->lastID;
  world_->processes.emplace(id, std::move(process));
  world_->tell(systemObjectID, globalAddress(audio::processObjectList));
  return id;
}

void MemoryAudioHardware::removeProcess(AudioObjectID process) {
  const std::lock_guard lock(world_->mutex);
  if (world_->processes.erase(process) == 0) return;
  world_->tell(systemObjectID, globalAddress(audio::processObjectList));
}

void MemoryAudioHardware::updateProcess(AudioObjectID process, MemoryProcess description) {
  const std::lock_guard lock(world_->mutex);
  const auto found = world_->processes.find(process);
  if (found == world_->processes.end()) return;
  found->second = std::move(description);
  world_->changes.raise();
}

// What a test looks at.

void MemoryAudioHardware::setTapFormat(const AudioStreamBasicDescription& format) {
  const std::lock_guard lock(world_->mutex);
  world_->tapFormat = format;
}

void MemoryAudioHardware::changeTapFormat(const AudioStreamBasicDescription& format) {
  const std::lock_guard lock(world_->mutex);
  world_->tapFormat = format;
  for (auto& [id, tap] : world_->taps) {
    tap.format = format;
    world_->tell(id, globalAddress(audio::tapFormat));
  }
}

void MemoryAudioHardware::setAggregateAliveDelay(Duration delay) {
  const std::lock_guard lock(world_->mutex);
  world_->aliveDelay = delay;
}

void MemoryAudioHardware::setOutputsFall(bool fall) {
  const std::lock_guard lock(world_->mutex);
  world_->outputsFall = fall;
}

AudioObjectID MemoryAudioHardware::outputOf(AudioObjectID aggregate) const {
  const std::lock_guard lock(world_->mutex);
  const auto* found = world_->findAggregate(aggregate);
  return found == nullptr ? 0 : world_->outputOf(*found);
}

std::vector<AudioObjectID> MemoryAudioHardware::taps() const {
  const std::lock_guard lock(world_->mutex);
  auto ids = World::keysOf(world_->taps);
  std::erase_if(ids, [this](AudioObjectID id) { return world_->findTap(id) == nullptr; });
  return ids;
}

std::vector<AudioObjectID> MemoryAudioHardware::aggregates() const {
  const std::lock_guard lock(world_->mutex);
  auto ids = World::keysOf(world_->aggregates);
  std::erase_if(ids, [this](AudioObjectID id) { return world_->findAggregate(id) == nullptr; });
  return ids;
}

std::optional<TapDescription> MemoryAudioHardware::tapDescription(AudioObjectID tap) const {
  const std::lock_guard lock(world_->mutex);
  const auto found = world_->taps.find(tap);
  if (found == world_->taps.end()) return std::nullopt;
  return found->second.description;
}

std::optional<AggregateDescription> MemoryAudioHardware::aggregateDescription(AudioObjectID device) const {
  const std::lock_guard lock(world_->mutex);
  const auto found = world_->aggregates.find(device);
  if (found == world_->aggregates.end()) return std::nullopt;
  return found->second.description;
}

std::optional<AudioObjectID> MemoryAudioHardware::runningAggregateOver(AudioObjectID process) const {
  for (const auto aggregateID : aggregates()) {
    if (!isRunning(aggregateID)) continue;
    const auto description = aggregateDescription(aggregateID);
    for (const auto tapID : taps()) {
      const auto tap = tapDescription(tapID);
      const auto& processes = tap->processes;
      if (std::find(processes.begin(), processes.end(), process) == processes.end()) continue;
      const auto uid = tap->uuid.text();
      const bool holdsTap = std::any_of(description->taps.begin(), description->taps.end(),
                                        [&](const AggregateTap& entry) { return entry.uid == uid; });
      if (holdsTap) return aggregateID;
    }
  }
  return std::nullopt;
}

bool MemoryAudioHardware::isRunning(AudioObjectID aggregate) const {
  const std::lock_guard lock(world_->mutex);
  const auto* found = world_->findAggregate(aggregate);
  if (found == nullptr) return false;
  return std::any_of(found->procs.begin(), found->procs.end(), [](const auto& entry) {
    const std::lock_guard cycle(entry.second->mutex);
    return entry.second->running;
  });
}

std::optional<std::string> MemoryAudioHardware::ioQueueLabel(AudioObjectID aggregate) const {
  const std::lock_guard lock(world_->mutex);
  const auto found = world_->aggregates.find(aggregate);
  if (found == world_->aggregates.end()) return std::nullopt;
  return found->second.queueLabel;
}

std::optional<float> MemoryAudioHardware::appliedGain(AudioObjectID aggregate) const {
  const std::lock_guard lock(world_->mutex);
  const auto found = world_->aggregates.find(aggregate);
  return found == world_->aggregates.end() ? std::nullopt : found->second.appliedGain;
}

bool MemoryAudioHardware::runIOCycle(AudioObjectID aggregate, const AudioBufferList& input,
                                     const AudioBufferList& output) {
  std::vector<std::shared_ptr<InstalledProc>> procs;
  {
    const std::lock_guard lock(world_->mutex);
    const auto* found = world_->findAggregate(aggregate);
    if (found == nullptr) return false;
    for (const auto& entry : found->procs) procs.push_back(entry.second);
    world_->changes.raise();
  }
  bool ran = false;
  for (const auto& proc : procs) {
    const std::lock_guard cycle(proc->mutex);
    if (!proc->running) continue;
    proc->block(input, output);
    ran = true;
  }
  return ran;
}

void MemoryAudioHardware::setCycles(Duration length, float sample) {
  world_->listenerExecutor.postAfter(length, [weakWorld = std::weak_ptr(world_), length, sample] {
    if (const auto world = weakWorld.lock()) world->driveCycles(length, sample);
  });
}

std::vector<MemoryCycle> MemoryAudioHardware::takeCycles() {
  const std::lock_guard lock(world_->mutex);
  return std::exchange(world_->cycles, {});
}

std::optional<MonotonicTime> MemoryAudioHardware::stoppedAt(AudioObjectID aggregate) const {
  const std::lock_guard lock(world_->mutex);
  const auto found = world_->aggregates.find(aggregate);
  return found == world_->aggregates.end() ? std::nullopt : found->second.stoppedAt;
}

IOBlock MemoryAudioHardware::ioBlock(AudioObjectID aggregate) const {
  const std::lock_guard lock(world_->mutex);
  const auto* found = world_->findAggregate(aggregate);
  return found == nullptr || found->procs.empty() ? IOBlock() : found->procs.begin()->second->block;
}

// Scripts and records.

void MemoryAudioHardware::fail(Match match, Status status, int count, int skip) {
  const std::lock_guard lock(world_->mutex);
  world_->failures.push_back({match, status, count, skip});
  world_->changes.raise();
}

void MemoryAudioHardware::clearFailures() {
  const std::lock_guard lock(world_->mutex);
  world_->failures.clear();
  world_->changes.raise();
}

std::vector<MemoryAudioHardware::Call> MemoryAudioHardware::calls() const {
  const std::lock_guard lock(world_->mutex);
  return world_->calls;
}

int MemoryAudioHardware::callCount(Method method) const {
  const std::lock_guard lock(world_->mutex);
  return static_cast<int>(std::count_if(world_->calls.begin(), world_->calls.end(),
                                        [&](const Call& call) { return call.method == method; }));
}

std::vector<MemoryAudioHardware::Method> MemoryAudioHardware::lifeCalls() const {
  const std::lock_guard lock(world_->mutex);
  std::vector<Method> methods;
  for (const auto& call : world_->calls) {
    if (call.method >= Method::createProcessTap) methods.push_back(call.method);
  }
  return methods;
}

void MemoryAudioHardware::clearCalls() {
  const std::lock_guard lock(world_->mutex);
  world_->calls.clear();
}

std::size_t MemoryAudioHardware::listenerCount(AudioObjectID object, const PropertyAddress& address) const {
  const std::lock_guard lock(world_->mutex);
  return static_cast<std::size_t>(std::count_if(
      world_->listeners.begin(), world_->listeners.end(),
      [&](const Listener& listener) { return listener.object == object && listener.address == address; }));
}

std::size_t MemoryAudioHardware::differentListenerCount() const {
  const std::lock_guard lock(world_->mutex);
  std::set<std::tuple<AudioObjectID, PropertyAddress, PropertyListener>> different;
  for (const auto& listener : world_->listeners) different.emplace(listener.object, listener.address, listener.block);
  return different.size();
}

const char* nameOf(MemoryAudioHardware::Method method) {
  static constexpr std::array names{
      "hasProperty",
      "isPropertySettable",
      "propertyDataSize",
      "readUInt32",
      "readInt32",
      "readFloat32",
      "readString",
      "readObjectIDs",
      "readFormat",
      "writeUInt32",
      "writeFloat32",
      "addPropertyListener",
      "removePropertyListener",
      "createProcessTap",
      "destroyProcessTap",
      "createAggregateDevice",
      "destroyAggregateDevice",
      "createIOProc",
      "destroyIOProc",
      "startDevice",
      "stopDevice",
  };
  return names.at(static_cast<std::size_t>(method));
}

}  // namespace quillmere
