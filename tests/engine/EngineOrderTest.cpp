// Random calls for a few applications, whose paths take their time to come alive, and beside the engine the same story
// told for each application by itself: one call after the other, each waiting for the path that the one before builds.
// All they have in common is the time that a path is given: it begins anew whenever any path comes alive.
// After every step both must have the same paths, on the same devices, at the same gains.
//
// A failure prints its seed; QUILLMERE_SEED=<seed> repeats that run alone.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <deque>
#include <functional>
#include <iostream>
#include <random>
#include <sstream>

#include "EngineFixture.h"
#include "engine/CoreAudioUtils.h"
#include "engine/ProcessTapEngine.h"

namespace quillmere {
namespace {

struct Path {
  std::string device;
  float gain = 1.0F;
};

std::ostream& operator<<(std::ostream& stream, const std::optional<Path>& path) {
  return path ? stream << path->device << " at " << path->gain : stream << "untouched";
}

bool areAlike(const std::optional<Path>& one, const std::optional<Path>& other) {
  if (!one || !other) return one.has_value() == other.has_value();
  return one->device == other->device && std::fabs(one->gain - other->gain) < 1e-3F;
}

/// One application as if it were the only one. Times in milliseconds.
class Story {
 public:
  /// What is the same for all.
  struct World {
    long long now = 0;
    long long aliveAfter = 0;
    /// When a path last came alive, anybody's: what waits gets its whole time anew.
    long long lastAlive = 0;
    /// Empty where there is no default output.
    std::string defaultDevice;
  };

  explicit Story(World& world) : world_(world) {}

  void tell(std::function<void(Story&)> call) {
    calls_.push_back(std::move(call));
    goOn();
  }
  /// To be called whenever time has passed, in steps in which nothing else happens.
  void goOn() {
    while (true) {
      if (isBuilding_) {
        if (*nextEnd() > world_.now) return;
        isBuilding_ = false;
        if (!comesAlive_) continue;
        path = half_;
        world_.lastAlive = world_.now;
      } else if (!calls_.empty()) {
        const auto call = std::move(calls_.front());
        calls_.pop_front();
        call(*this);
      } else {
        return;
      }
    }
  }
  [[nodiscard]] std::optional<long long> nextEnd() const {
    if (!isBuilding_) return std::nullopt;
    return comesAlive_ ? aliveAt_ : std::max(begunAt_, world_.lastAlive) + 2000;
  }

  void applyGain(float gain) {
    if (gain == 1.0F && !route_) {
      path.reset();
    } else if (path) {
      path->gain = gain;
    } else {
      build(gain);
    }
  }
  void applyRoute(const std::optional<std::string>& route) {
    if (route == route_) return;
    route_ = route;
    const auto before = std::exchange(path, std::nullopt);
    if (before) {
      if (route || before->gain != 1.0F) build(before->gain);
    } else if (route) {
      build(1.0F);
    }
  }
  void hasAppeared() {
    if (route_ && !path && hasProcess) build(1.0F);
  }
  void defaultHasChanged() {
    if (route_ || !path) return;
    const auto gain = std::exchange(path, std::nullopt)->gain;
    build(gain);
  }
  void stop() {
    isBuilding_ = false;
    isStopping_ = true;
    goOn();
    isStopping_ = false;
    path.reset();
  }

  /// Not in turn: the process list is everybody's.
  bool hasProcess = false;
  std::optional<Path> path;

 private:
  void build(float gain) {
    if (isStopping_ || !hasProcess) return;
    const auto device = route_.value_or(world_.defaultDevice);
    if (device.empty()) return;
    half_ = {device, gain};
    comesAlive_ = device != "gone" && world_.aliveAfter <= 2000;
    begunAt_ = world_.now;
    aliveAt_ = world_.now + world_.aliveAfter;
    isBuilding_ = true;
  }

  World& world_;
  std::deque<std::function<void(Story&)>> calls_;
  std::optional<std::string> route_;
  bool isBuilding_ = false;
  bool isStopping_ = false;
  bool comesAlive_ = false;
  long long begunAt_ = 0;
  long long aliveAt_ = 0;
  Path half_;
};

class EngineOrder : public EngineFixture {
 protected:
  static constexpr int applications = 4;

  EngineOrder() {
    hardware.addDevice({.uid = "headphones", .name = "Headphones"});
    world.defaultDevice = "speakers";
    for (int index = 0; index < applications; ++index) stories.emplace_back(world);
  }

  int below(int bound) { return static_cast<int>(random() % static_cast<std::uint64_t>(bound)); }
  static std::string nameOf(int index) { return "app" + std::to_string(index); }
  static AudioObjectID objectOf(int index) { return 1000 + static_cast<AudioObjectID>(index); }

  void step() {
    const int index = below(applications);
    auto& story = stories[static_cast<std::size_t>(index)];
    switch (below(16)) {
      case 0:
      case 1:
      case 2:
      case 3: {
        const float gain = static_cast<float>(below(5)) / 4.0F;
        note(nameOf(index), " gain ", gain);
        engine->applyGain(gain, nameOf(index));
        story.tell([gain](Story& each) { each.applyGain(gain); });
        break;
      }
      case 4:
      case 5: {
        static const std::optional<std::string> routes[] = {std::nullopt, "headphones", "speakers", "gone"};
        const auto& route = routes[below(4)];
        note(nameOf(index), " route ", route.value_or("none"));
        engine->applyRouting(route, nameOf(index));
        story.tell([route](Story& each) { each.applyRoute(route); });
        break;
      }
      case 6:
      case 7:
        changeProcesses();
        break;
      case 8:
        note("refresh");
        engine->refreshUnroutedSubgraphsForNewSystemDefault();
        for (auto& each : stories) each.tell([](Story& one) { one.defaultHasChanged(); });
        break;
      case 9: {
        static constexpr const char* uids[] = {"speakers", "headphones", ""};
        world.defaultDevice = uids[below(3)];
        note("the default is ", world.defaultDevice);
        hardware.setDefaultOutput(CoreAudioUtils::deviceID(hardware, world.defaultDevice).value_or(0));
        break;
      }
      case 10:
        if (below(8) != 0) break;
        note("stop");
        engine->stop();
        for (auto& each : stories) each.stop();
        break;
      case 11:
      case 12: {
        static constexpr long long delays[] = {0, 30, 500, 3600000};
        world.aliveAfter = delays[below(4)];
        note("alive after ", world.aliveAfter);
        hardware.setAggregateAliveDelay(std::chrono::milliseconds(world.aliveAfter));
        break;
      }
      default: {
        static constexpr long long spans[] = {10, 40, 200, 2500};
        const auto span = spans[below(4)];
        note("advance ", span);
        advance(span);
        break;
      }
    }
    time.runUntilIdle();
  }

  void changeProcesses() {
    std::vector<CoreAudioProcessMonitor::Snapshot> snapshots;
    std::vector<int> fresh;
    std::string names;
    for (int index = 0; index < applications; ++index) {
      auto& story = stories[static_cast<std::size_t>(index)];
      const bool isThere = below(4) != 0;
      if (isThere && !story.hasProcess) fresh.push_back(index);
      story.hasProcess = isThere;
      if (isThere) snapshots.push_back({nameOf(index), 1, objectOf(index)});
      if (isThere) names += " " + nameOf(index);
    }
    note("processes", names);
    engine->updateProcessMap(std::move(snapshots));
    for (const int index : fresh) {
      stories[static_cast<std::size_t>(index)].tell([](Story& each) { each.hasAppeared(); });
    }
  }

  void advance(long long span) {
    time.advance(std::chrono::milliseconds(span));
    const auto until = world.now + span;
    while (true) {
      auto next = until;
      for (const auto& story : stories) next = std::min(next, story.nextEnd().value_or(until));
      world.now = next;
      for (auto& story : stories) story.goOn();
      if (next == until) return;
    }
  }

  /// As the machine has it.
  std::optional<Path> pathOf(int index) {
    const auto aggregate = hardware.runningAggregateOver(objectOf(index));
    if (!aggregate) return std::nullopt;
    // Long enough for any glide to arrive.
    playThrough(*aggregate, 1.0F, 20000);
    return Path{hardware.aggregateDescription(*aggregate)->mainDeviceUID, playThrough(*aggregate, 1.0F, 1).value()};
  }

  template <typename... Parts>
  void note(const Parts&... parts) {
    std::ostringstream text;
    (text << ... << parts);
    recent.push_back(text.str());
    if (recent.size() > 30) recent.pop_front();
  }
  std::string lastSteps() const {
    std::string text;
    for (const auto& each : recent) text += "  " + each + "\n";
    return text;
  }

  void run(std::uint64_t seed, int steps) {
    std::cout << "seed " << seed << "\n";
    random.seed(seed);
    for (int count = 0; count < steps; ++count) {
      step();
      for (int index = 0; index < applications; ++index) {
        const auto made = pathOf(index);
        const auto& wanted = stories[static_cast<std::size_t>(index)].path;
        ASSERT_TRUE(areAlike(made, wanted)) << nameOf(index) << " is " << made << ", alone it would be " << wanted
                                            << "; QUILLMERE_SEED=" << seed << ", the last steps were:\n"
                                            << lastSteps();
      }
      log.clear();
      hardware.clearCalls();
    }
    ASSERT_EQ(time.threadSleepCount(), 0);
  }

  std::mt19937_64 random;
  Story::World world;
  std::vector<Story> stories;
  std::unique_ptr<ProcessTapEngine> engine = std::make_unique<ProcessTapEngine>(hardware, time.runtime(log));
  std::deque<std::string> recent;
};

TEST_F(EngineOrder, EachApplicationFaresAsIfItWereAlone) {
  if (const char* seed = std::getenv("QUILLMERE_SEED")) {
    run(std::strtoull(seed, nullptr, 10), 2000);
  } else {
    run(std::random_device{}(), 2000);
  }
}

}  // namespace
}  // namespace quillmere
