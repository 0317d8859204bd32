// The rules of the mixer stated a second time, as plainly as they can be: maps, and a clock that is stepped by hand.
// Shares nothing with the program. What it expects of store and engine stands in `written` and `calls`.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace quillmere::model {

struct Settings {
  float gain = 1.0F;
  bool muted = false;
  std::optional<std::string> route;
  friend bool operator==(const Settings&, const Settings&) = default;
};

struct Row {
  std::string id;
  std::string name;
  Settings settings;
  friend bool operator==(const Row&, const Row&) = default;
};

struct Layout {
  std::string id;
  std::string name;
  std::vector<Row> rows;
  double updatedAt = 0.0;
  friend bool operator==(const Layout&, const Layout&) = default;
};

struct Rule {
  std::set<std::string> triggers;
  std::set<std::string> candidates;
  float target = 0.3F;
  long long delayMillis = 1500;
};

struct Call {
  enum class Kind { gain, route, refresh };
  Kind kind = Kind::refresh;
  std::string id;
  float gain = 0.0F;
  std::optional<std::string> route;
  friend bool operator==(const Call&, const Call&) = default;
};

struct Process {
  std::string name;
  bool sounds = false;
  bool listens = false;
};

struct Device {
  std::string uid;
  bool personal = false;
  float volume = 0.5F;
};

struct Track {
  std::string title;
  bool plays = false;
  friend bool operator==(const Track&, const Track&) = default;
};

/// What survives the program.
struct Disk {
  std::optional<std::vector<Row>> rows;
  std::optional<std::vector<Layout>> layouts;
  std::optional<std::string> activeLayout;
  std::optional<double> master;
  std::optional<std::string> device;
  bool pauses = true;
  bool onboarded = false;
  Rule rule;
  std::set<std::string> candidates;
};

/// A cycle of an application's sound through its tap.
struct TapCycle {
  static constexpr long long never = std::numeric_limits<long long>::max();

  std::string id;
  long long at = 0;
  /// When that tap went.
  long long goneAt = never;
};

/// What is there whether the program runs or not.
struct World {
  std::map<std::string, Process> processes;
  /// By the number of its plugging-in, so that the order is that of the system's list.
  std::map<int, Device> devices;
  int defaultDevice = 0;
  /// The default that has gone, while no other has taken its place.
  std::optional<Device> departed;
  bool leavesGaps = false;
  /// A choice of the program's that has no answer yet; 0 for none.
  int awaitedDevice = 0;
  bool answersLater = false;
  int lastPlug = 0;
  std::optional<Track> track;
  std::set<std::string> heardByEngine;
  /// Since the last look at least.
  std::vector<TapCycle> cycles;
};

enum class Phase { idle, focus, rest };

class RuleModel {
 public:
  static constexpr long long never = std::numeric_limits<long long>::max();

  RuleModel(World& theWorld, Disk& theDisk) : world(theWorld), disk(theDisk) {
    layouts = disk.layouts.value_or(std::vector<Layout>{});
    activeLayout = disk.activeLayout;
    master = disk.master ? static_cast<float>(*disk.master) : 0.7F;
    chosenDevice = disk.device;
    rule = disk.rule;
    onboarded = disk.onboarded;
    setPauses(disk.pauses);
    setCandidates(disk.candidates);
    if (disk.rows) {
      for (const auto& row : *disk.rows) earlier.insert({row.id, row.settings});
    }
    listenToDefault();
    takeHardwareVolume();
    lastPersonal = defaultIsPersonal();
    lastDefaultUID = defaultUID();
    for (const auto& [plug, device] : world.devices) knownUIDs.insert(device.uid);
    detect();
    pollDevices();
    pollTrack();
  }

  // Time. ------------------------------------------------------------------------------------------------------------

  [[nodiscard]] double now() const { return 700000000.0 + (static_cast<double>(clock * 1000000) / 1e9 + wallOffset); }
  void jump(double seconds) { wallOffset += seconds; }
  void advance(long long millis) {
    const auto until = clock + millis;
    while (true) {
      long long next = std::min({detectionDue, deviceDue, trackDue, sleepDue, pomodoroDue, restoreDue});
      for (const auto due : resumesDue) next = std::min(next, due);
      if (next > until) break;
      clock = next;
      runDue();
    }
    clock = until;
  }

  // Gestures. --------------------------------------------------------------------------------------------------------

  void setGain(const std::string& id, float gain) {
    auto* row = find(id);
    if (row == nullptr) return;
    row->settings.gain = gain;
    storeRows();
    send(id, gain);
  }
  void toggleMute(const std::string& id) {
    auto* row = find(id);
    if (row == nullptr) return;
    row->settings.muted = !row->settings.muted;
    storeRows();
    send(id, row->settings.muted ? 0.0F : 1.0F);
  }
  void setRoute(const std::string& id, const std::optional<std::string>& route) {
    auto* row = find(id);
    if (row == nullptr) return;
    row->settings.route = route;
    storeRows();
    calls.push_back({Call::Kind::route, id, 0.0F, route});
  }
  void setMaster(float gain) {
    master = gain;
    storeMaster();
    const auto device = world.devices.find(readableDefault());
    if (device == world.devices.end()) return;
    device->second.volume = gain;
    volumeTold(device->first);
  }
  void chooseDevice(const std::optional<std::string>& uid) {
    if (uid == chosenDevice) return;
    chosenDevice = uid;
    disk.device = uid;
    written.emplace_back("quillmere.outputDeviceUID");
    if (!uid) return;
    suppressNextLoss = true;
    bool moved = false;
    for (const auto& [plug, device] : world.devices) {
      if (device.uid != *uid) continue;
      moved = readableDefault() != plug;
      if (moved && world.answersLater) {
        world.awaitedDevice = plug;
        moved = false;
      } else if (moved) {
        world.defaultDevice = plug;
        world.departed.reset();
      }
      break;
    }
    listenToDefault();
    takeHardwareVolume();
    calls.push_back({});
    if (moved) defaultMoved();
  }
  void setRule(const Rule& next) {
    rule = next;
    disk.rule = next;
    written.emplace_back("quillmere.duckRule");
  }
  void setPauses(bool on) {
    pauses = on;
    disk.pauses = on;
    written.emplace_back("quillmere.pauseOnHeadphoneDisconnect");
  }
  void setCandidates(const std::set<std::string>& ids) {
    candidates = ids;
    disk.candidates = ids;
    written.emplace_back("quillmere.focusCandidates");
  }
  void completeOnboarding() {
    onboarded = true;
    disk.onboarded = true;
    written.emplace_back("quillmere.onboardingCompleted");
  }

  void addLayout(const std::string& id, const std::string& name) {
    layouts.push_back({id, name, rows, now()});
    storeLayouts();
  }
  void deleteLayout(const std::string& id) {
    std::erase_if(layouts, [&](const Layout& each) { return each.id == id; });
    if (activeLayout == id) activeLayout.reset();
    storeLayouts();
    storeActive();
  }
  void renameLayout(const std::string& id, const std::string& name) {
    for (auto& layout : layouts) {
      if (layout.id != id) continue;
      layout.name = name;
      layout.updatedAt = now();
      storeLayouts();
      return;
    }
  }
  void duplicateLayout(const std::string& id, const std::string& newID) {
    for (const auto& layout : layouts) {
      if (layout.id != id) continue;
      layouts.push_back({newID, layout.name + " Copy", layout.rows, now()});
      storeLayouts();
      return;
    }
  }
  void applyLayout(const std::string& id) {
    for (const auto& layout : layouts) {
      if (layout.id != id) continue;
      for (auto& row : rows) {
        for (const auto& saved : layout.rows) {
          if (saved.id == row.id) row.settings = saved.settings;
        }
      }
      activeLayout = id;
      storeLayouts();
      storeActive();
      storeRows();
      for (const auto& row : rows) send(row.id, row.settings.gain);
      return;
    }
  }

  void toggleWhisper() {
    if (!whispers) {
      beforeWhisperMaster = master;
      for (auto& row : rows) {
        beforeWhisper[row.id] = row.settings.gain;
        row.settings.gain = 0.1F;
        send(row.id, 0.1F);
      }
      master = 0.1F;
    } else {
      giveBack(beforeWhisper);
      beforeWhisper.clear();
      master = beforeWhisperMaster;
    }
    storeMaster();
    whispers = !whispers;
  }

  void startSleep(int minutes) {
    cancelSleep();
    sleepStartMaster = master;
    sleepTotal = minutes * 60.0;
    sleepEnd = now() + sleepTotal;
    sleepTick();
  }
  void cancelSleep() {
    sleepEnd.reset();
    sleepDue = never;
  }

  void startFocus() {
    cancelFocus(true);
    phase = Phase::focus;
    phaseEnd = now() + focusMinutes * 60.0;
    for (auto& row : rows) {
      beforeFocus[row.id] = row.settings.gain;
      if (focusApp == row.id) continue;
      row.settings.gain = 0.0F;
      send(row.id, 0.0F);
    }
    pomodoroTick();
  }
  void cancelFocus(bool silently) {
    pomodoroDue = never;
    if (!silently) endFocusSilence();
    phase = Phase::idle;
  }
  void skipToBreak() {
    if (phase == Phase::focus) phaseEnd = now();
  }
  void skipToIdle() {
    if (phase == Phase::rest) phaseEnd = now();
  }

  // What others do. --------------------------------------------------------------------------------------------------

  void setVolume(int plug, float volume) {
    world.devices.at(plug).volume = volume;
    volumeTold(plug);
  }
  void moveDefault(int plug) {
    if (world.defaultDevice == plug) return;
    world.defaultDevice = plug;
    world.departed.reset();
    if (world.awaitedDevice == 0) defaultMoved();
  }
  /// The system answers the choice that is awaited. Listeners hear of a choice then, and not before.
  void answer(bool takes) {
    if (world.awaitedDevice == 0) return;
    if (takes) {
      world.defaultDevice = world.awaitedDevice;
      world.departed.reset();
    }
    world.awaitedDevice = 0;
    defaultMoved();
    if (!takes) refused();
  }
  void plugIn(const Device& device) {
    world.devices[++world.lastPlug] = device;
    knownUIDs.insert(device.uid);
    deviceCame(device.uid);
  }
  void unplug(int plug) {
    const auto device = world.devices.at(plug);
    world.devices.erase(plug);
    const bool wasAwaited = world.awaitedDevice == plug;
    if (wasAwaited) world.awaitedDevice = 0;
    const bool wasDefault = world.defaultDevice == plug;
    if (wasDefault && world.leavesGaps) {
      world.departed = device;
    } else if (wasDefault) {
      world.defaultDevice = world.devices.empty() ? 0 : world.devices.begin()->first;
    }
    knownUIDs.erase(device.uid);
    deviceWent(device.uid);
    // A moment without a default is not told.
    if (wasAwaited || (wasDefault && !world.leavesGaps && world.awaitedDevice == 0)) defaultMoved();
    if (wasAwaited) refused();
  }

  // State. -----------------------------------------------------------------------------------------------------------

  World& world;
  Disk& disk;
  long long clock = 0;
  double wallOffset = 0.0;

  std::vector<Row> rows;
  std::vector<Layout> layouts;
  std::optional<std::string> activeLayout;
  float master = 0.7F;
  std::optional<std::string> chosenDevice;
  std::map<std::string, double> heardAt;
  long long lastLook = 0;
  std::set<std::string> microphones;
  bool ducks = false;
  std::set<std::string> ducked;
  bool onboarded = false;
  Rule rule;
  std::vector<std::pair<std::string, bool>> shownDevices;
  bool whispers = false;
  std::optional<Track> track;
  std::optional<double> sleepEnd;
  Phase phase = Phase::idle;
  double phaseEnd = 0.0;
  int focusMinutes = 25;
  int breakMinutes = 5;
  std::optional<std::string> focusApp;
  std::set<std::string> candidates;
  bool pauses = true;

  /// Keys written, in order, since the last clear.
  std::vector<std::string> written;
  std::vector<Call> calls;
  int keyPresses = 0;
  std::vector<std::string> sounds;

 private:
  Row* find(const std::string& id) {
    for (auto& row : rows) {
      if (row.id == id) return &row;
    }
    return nullptr;
  }
  void send(const std::string& id, float gain) { calls.push_back({Call::Kind::gain, id, gain, std::nullopt}); }
  void storeRows() {
    disk.rows = rows;
    written.emplace_back("quillmere.appsState");
  }
  void storeLayouts() {
    disk.layouts = layouts;
    written.emplace_back("quillmere.profiles");
  }
  void storeActive() {
    disk.activeLayout = activeLayout;
    written.emplace_back("quillmere.activeProfileID");
  }
  void storeMaster() {
    disk.master = static_cast<double>(master);
    written.emplace_back("quillmere.masterGain");
  }
  void giveBack(const std::map<std::string, float>& saved) {
    for (const auto& [id, gain] : saved) {
      auto* row = find(id);
      if (row == nullptr) continue;
      row->settings.gain = gain;
      send(id, gain);
    }
  }
  void endFocusSilence() {
    giveBack(beforeFocus);
    beforeFocus.clear();
  }

  // The periodic looks.

  void runDue() {
    if (detectionDue == clock) {
      detect();
    } else if (deviceDue == clock) {
      pollDevices();
    } else if (trackDue == clock) {
      pollTrack();
    } else if (restoreDue == clock) {
      restoreDue = never;
      endDuck();
    } else if (sleepDue == clock) {
      sleepTick();
    } else if (pomodoroDue == clock) {
      pomodoroTick();
    } else {
      const auto due = std::ranges::find(resumesDue, clock);
      resumesDue.erase(due);
      if (!track || !track->plays) ++keyPresses;
    }
  }

  void detect() {
    detectionDue = clock + 150;
    std::vector<Row> next;
    std::vector<Row> restored;
    for (const bool sounding : {true, false}) {
      std::map<std::string, std::string> byName;
      for (const auto& [id, process] : world.processes) {
        if (process.sounds == sounding) byName[process.name] = id;
      }
      for (const auto& [name, id] : byName) {
        Row row{id, name, {}};
        if (const auto* present = find(id)) {
          row.settings = present->settings;
        } else if (const auto stored = earlier.find(id); stored != earlier.end()) {
          row.settings = stored->second;
          if (restoredOnce.insert(id).second) restored.push_back(row);
        }
        next.push_back(row);
      }
    }
    rows = next;

    for (const auto& [id, process] : world.processes) {
      if (process.sounds) heardAt[id] = now();
    }
    for (const auto& id : world.heardByEngine) heardAt[id] = now();
    // What a tap has heard since the last look counts, and nothing that it heard before.
    for (const auto& cycle : world.cycles) {
      const bool isSinceLastLook = cycle.at > lastLook && cycle.at <= clock;
      if (isSinceLastLook && cycle.goneAt >= clock) heardAt[cycle.id] = now();
    }
    lastLook = clock;
    std::erase_if(heardAt, [this](const auto& entry) { return entry.second < now() - 1.5; });

    for (const auto& row : restored) {
      const auto& [gain, muted, route] = row.settings;
      if (route) calls.push_back({Call::Kind::route, row.id, 0.0F, route});
      if (muted) {
        send(row.id, 0.0F);
      } else if (std::fabs(gain - 1.0F) > 0.005F) {
        send(row.id, gain);
      }
    }

    std::set<std::string> listening;
    for (const auto& [id, process] : world.processes) {
      if (process.listens) listening.insert(id);
    }
    if (listening == microphones) return;
    microphones = listening;
    microphonesChanged();
  }

  void microphonesChanged() {
    bool triggered = false;
    for (const auto& id : rule.triggers) triggered = triggered || microphones.contains(id);
    if (ducks) {
      for (const auto& id : microphones) {
        if (ducked.erase(id) == 0) continue;
        if (const auto saved = beforeDuck.find(id); saved != beforeDuck.end()) {
          giveBack({*saved});
          beforeDuck.erase(id);
        }
      }
    }
    if (!triggered && ducks) {
      const auto delay = std::max(rule.delayMillis, 0LL);
      restoreDue = clock + delay;
      if (delay == 0) {
        restoreDue = never;
        endDuck();
      }
    }
    if (triggered && !ducks) {
      restoreDue = never;
      ducks = true;
      ducked.clear();
      for (auto& row : rows) {
        if (microphones.contains(row.id) || !rule.candidates.contains(row.id)) continue;
        beforeDuck[row.id] = row.settings.gain;
        row.settings.gain = rule.target;
        ducked.insert(row.id);
        send(row.id, rule.target);
      }
    }
  }

  void endDuck() {
    ducks = false;
    for (const auto& id : ducked) {
      if (const auto saved = beforeDuck.find(id); saved != beforeDuck.end()) giveBack({*saved});
    }
    ducked.clear();
    beforeDuck.clear();
  }

  void pollTrack() {
    trackDue = clock + 1000;
    track = world.track;
    if (track && track->plays) awaited.reset();
  }

  void pollDevices() {
    deviceDue = clock + 3000;
    std::map<std::string, bool> byName;
    for (const auto& [plug, device] : world.devices) byName[device.uid] = plug == readableDefault();
    shownDevices.clear();
    for (const bool isDefault : {true, false}) {
      for (const auto& [uid, each] : byName) {
        if (each == isDefault) shownDevices.emplace_back(uid, each);
      }
    }
    const auto uid = world.devices.contains(readableDefault()) ? defaultUID() : std::nullopt;
    if (uid == polledDefault) return;
    polledDefault = uid;
    listenToDefault();
    takeHardwareVolume();
  }

  void sleepTick() {
    sleepDue = never;
    const double left = *sleepEnd - now();
    if (left <= 0.0) {
      master = 0.0F;
      storeMaster();
      sleepEnd.reset();
      return;
    }
    double done = 0.0;
    if (sleepTotal > left) done = (sleepTotal - left) / sleepTotal;
    master = sleepStartMaster * static_cast<float>(1.0 - done);
    sleepDue = clock + 1000;
  }

  void pomodoroTick() {
    pomodoroDue = never;
    if (phase == Phase::focus && now() >= phaseEnd) {
      phase = Phase::rest;
      phaseEnd = now() + breakMinutes * 60.0;
      endFocusSilence();
      sounds.emplace_back("Glass");
    }
    if (phase == Phase::rest && now() >= phaseEnd) {
      phase = Phase::idle;
      sounds.emplace_back("Hero");
      return;
    }
    pomodoroDue = clock + 1000;
  }

  // Devices.

  [[nodiscard]] int readableDefault() const {
    return world.awaitedDevice != 0 ? world.awaitedDevice : world.defaultDevice;
  }
  /// Listed, or the last one while there is no other.
  [[nodiscard]] const Device* defaultOutput() const {
    const auto device = world.devices.find(readableDefault());
    if (device != world.devices.end()) return &device->second;
    return world.departed && world.awaitedDevice == 0 ? &*world.departed : nullptr;
  }
  [[nodiscard]] std::optional<std::string> defaultUID() const {
    return defaultOutput() == nullptr ? std::nullopt : std::optional(defaultOutput()->uid);
  }
  [[nodiscard]] bool defaultIsPersonal() const { return defaultOutput() != nullptr && defaultOutput()->personal; }
  void listenToDefault() { heardVolumes.insert(readableDefault()); }
  void takeHardwareVolume() {
    if (defaultOutput() != nullptr) master = defaultOutput()->volume;
  }
  void refused() {
    listenToDefault();
    takeHardwareVolume();
    calls.push_back({});
  }
  void volumeTold(int plug) {
    // Whoever changed, it is the default's volume that is looked at.
    if (!heardVolumes.contains(plug) || defaultOutput() == nullptr) return;
    const float volume = defaultOutput()->volume;
    if (std::fabs(master - volume) > 0.001F) master = volume;
  }
  void defaultMoved() {
    const bool wasPersonal = lastPersonal;
    const auto oldUID = lastDefaultUID;
    lastPersonal = defaultIsPersonal();
    lastDefaultUID = defaultUID();
    if (suppressNextLoss) {
      suppressNextLoss = false;
      return;
    }
    if (wasPersonal && !lastPersonal && pauses) pauseFor(oldUID);
  }
  void deviceWent(const std::string& uid) {
    if (!pauses || awaited) return;
    for (const auto& row : rows) {
      if (row.settings.route != uid) continue;
      pauseFor(uid);
      return;
    }
  }
  void deviceCame(const std::string& uid) {
    if (!pauses || awaited != uid) return;
    awaited.reset();
    resumesDue.push_back(clock + 800);
  }
  void pauseFor(const std::optional<std::string>& uid) {
    if (track) {
      if (!track->plays) return;
    } else {
      bool audible = false;
      for (const auto& [id, at] : heardAt) audible = audible || !microphones.contains(id);
      if (!audible) return;
    }
    ++keyPresses;
    awaited = uid;
  }

  std::map<std::string, Settings> earlier;
  std::set<std::string> restoredOnce;
  std::map<std::string, float> beforeDuck;
  std::map<std::string, float> beforeWhisper;
  float beforeWhisperMaster = 0.7F;
  std::map<std::string, float> beforeFocus;
  float sleepStartMaster = 0.0F;
  double sleepTotal = 0.0;
  std::set<int> heardVolumes;
  std::optional<std::string> polledDefault;
  bool lastPersonal = false;
  std::optional<std::string> lastDefaultUID;
  std::set<std::string> knownUIDs;
  bool suppressNextLoss = false;
  std::optional<std::string> awaited;

  long long detectionDue = 0;
  long long deviceDue = 0;
  long long trackDue = 0;
  long long restoreDue = never;
  long long sleepDue = never;
  long long pomodoroDue = never;
  std::vector<long long> resumesDue;
};

}  // namespace quillmere::model
