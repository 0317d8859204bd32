// What is described as crossing does cross: each field from a mixer to its remote, each operation back, by the lists
// themselves, so that a line that is added to them is tested with the rest.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "core/Product.h"
#include "platform/memory/RecordingLogSink.h"
#include "remote/MixerHost.h"
#include "remote/RemoteState.h"
#include "remote/SeamVersion.h"
#include "remote/wire/Forms.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using nlohmann::json;

// A value of each type that is unlike what it is at first, and unlike the next one of its kind.

int lastSample = 0;

void makeSample(bool& value) { value = !value; }
void makeSample(int& value) { value = ++lastSample; }
void makeSample(std::int64_t& value) { value = ++lastSample; }
void makeSample(std::uint32_t& value) { value = static_cast<std::uint32_t>(++lastSample); }
void makeSample(float& value) { value = 0.125F * static_cast<float>(++lastSample); }
void makeSample(double& value) { value = 0.1 * static_cast<double>(++lastSample); }
void makeSample(std::string& value) { value = "sample " + std::to_string(++lastSample); }
void makeSample(Uuid& value) {
  const auto number = std::to_string(100000 + ++lastSample);
  value = Uuid::parse("00000000-0000-4000-8000-000000" + number).value();
}
void makeSample(PomodoroPhase& value) { value = PomodoroPhase::focus(Date{static_cast<double>(++lastSample)}); }
void makeSample(Date& date);
void makeSample(AudioApp& app);
void makeSample(Profile& profile);
void makeSample(DuckRule& rule);
void makeSample(AudioOutputDevice& device);
void makeSample(BrowserTab& tab);
void makeSample(BrowserCompanion& companion);
void makeSample(NowPlayingTrack& track);
template <typename T>
void makeSample(std::optional<T>& value) {
  makeSample(value.emplace());
}
template <typename T>
void makeSample(std::vector<T>& values) {
  makeSample(values.emplace_back());
  makeSample(values.emplace_back());
}
template <typename T>
void makeSample(std::set<T>& values) {
  for (int each = 0; each < 2; ++each) {
    T value{};
    makeSample(value);
    values.insert(value);
  }
}
template <typename Key, typename T>
void makeSample(std::map<Key, T>& values) {
  Key key{};
  makeSample(key);
  makeSample(values[key]);
}
void makeSample(Date& date) { makeSample(date.secondsSinceReference); }
void makeSample(AudioApp& app) {
  auto& [bundleID, name, gain, muted, routedDeviceUID] = app;
  makeSample(bundleID), makeSample(name), makeSample(gain), makeSample(muted), makeSample(routedDeviceUID);
}
void makeSample(Profile& profile) {
  auto& [id, name, apps, focusModeID, updatedAt] = profile;
  makeSample(id), makeSample(name), makeSample(apps), makeSample(focusModeID), makeSample(updatedAt);
}
void makeSample(DuckRule& rule) {
  auto& [triggers, ducked, targetGain, fadeMillis, restoreDelayMillis] = rule;
  makeSample(triggers), makeSample(ducked), makeSample(targetGain), makeSample(fadeMillis);
  makeSample(restoreDelayMillis);
}
void makeSample(AudioOutputDevice& device) {
  auto& [uid, name, id, isDefault] = device;
  makeSample(uid), makeSample(name), makeSample(id), makeSample(isDefault);
}
void makeSample(BrowserTab& tab) {
  auto& [id, browserBundleID, title, urlString, isActive] = tab;
  makeSample(id), makeSample(browserBundleID), makeSample(title), makeSample(urlString), makeSample(isActive);
}
void makeSample(BrowserCompanion& companion) {
  auto& [browser, version, hostVersion] = companion;
  makeSample(browser), makeSample(version), makeSample(hostVersion);
}
void makeSample(NowPlayingTrack& track) {
  auto& [title, artist, album, sourceBundleID, isPlaying, elapsedTime, totalDuration] = track;
  makeSample(title), makeSample(artist), makeSample(album), makeSample(sourceBundleID), makeSample(isPlaying);
  makeSample(elapsedTime), makeSample(totalDuration);
}

/// Gives the field a value that it hasn't had.
void change(auto& field) {
  auto value = field.get();
  makeSample(value);
  EXPECT_TRUE(field.set(std::move(value)));
}

/// A mixer that changes its fields when a test says so, and notes what it is asked for.
class NotedMixer final : public MixerState {
  auto note(const char* name) {
    return [this, name](const auto&... arguments) {
      auto list = json::array();
      (list.push_back(json(arguments)), ...);
      noted.emplace_back(name, std::move(list));
    };
  }

 public:
#define OPERATION(name, parameters, arguments) \
  void name parameters override { note(#name) arguments; }
#include "state/MixerOperations.def"

  template <typename Visitor>
  void eachField(const Visitor& visit) {
    visitOwnFields(visit);
  }

  std::vector<std::pair<std::string, json>> noted;
};

class Seam : public ::testing::Test {
 protected:
  void deliver() {
    for (const auto& bytes : std::exchange(toRemote, {})) EXPECT_TRUE(remote.take(decodeMessage(bytes).value()));
    for (const auto& bytes : std::exchange(toMixer, {})) EXPECT_TRUE(host->take(decodeMessage(bytes).value()));
  }
  void connect() {
    host.emplace(
        mixer, runtime, [this](const json& sent) { toRemote.push_back(encodeMessage(sent)); }, [] { return false; });
    deliver();
  }
  void expectSame() const {
#define FIELD(type, name, ...) EXPECT_EQ(*mixer.name(), *remote.name()) << #name;
#include "state/MixerFields.def"
  }

  VirtualTime time;
  RecordingLogSink log;
  Runtime runtime{time.runtime(log)};
  NotedMixer mixer;
  std::vector<std::string> toRemote;
  std::vector<std::string> toMixer;
  RemoteState remote{log, [this](const json& sent) { toMixer.push_back(encodeMessage(sent)); }};
  std::optional<MixerHost> host;
};

TEST_F(Seam, EachFieldIsThereFromTheStart) {
  mixer.eachField([](const char*, auto& field) { change(field); });
  connect();
  expectSame();
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Seam, EachFieldFollowsItsChangesByItself) {
  connect();
  mixer.eachField([&](const char* name, auto& field) {
    change(field);
    EXPECT_EQ(toRemote.size(), 1U) << name;
    deliver();
    expectSame();
  });
}

TEST_F(Seam, EachOperationReachesTheMixerWithItsArgumentsInTheirOrder) {
  connect();
  MixerState::visitOperations(
      [&]<typename... Parameters>(const char* name, void (MixerState::*operation)(Parameters...)) {
        std::tuple<std::remove_cvref_t<Parameters>...> arguments;
        std::apply([](auto&... each) { (makeSample(each), ...); }, arguments);
        auto expected = json::array();
        std::apply([&](const auto&... each) { (expected.push_back(json(each)), ...); }, arguments);

        std::apply([&](const auto&... each) { (remote.*operation)(each...); }, arguments);
        deliver();

        ASSERT_EQ(mixer.noted.size(), 1U) << name;
        EXPECT_EQ(mixer.noted.front().first, name);
        EXPECT_EQ(mixer.noted.front().second, expected) << name;
        mixer.noted.clear();
        deliver();
      });
}

TEST_F(Seam, TheVersionIsTheProgramsAndOfWhatCrosses) {
  EXPECT_TRUE(seamVersion().starts_with(std::string(appVersion()) + " ("));
  EXPECT_EQ(seamVersion(), seamVersion());
}

TEST_F(Seam, NoTwoThatCrossHaveTheSameName) {
  std::set<std::string> fields;
  mixer.visitFields([&](const char* name, const auto&) { EXPECT_TRUE(fields.insert(name).second) << name; });
  std::set<std::string> operations;
  MixerState::visitOperations([&](const char* name, auto) { EXPECT_TRUE(operations.insert(name).second) << name; });
  EXPECT_FALSE(fields.empty());
  EXPECT_FALSE(operations.empty());
}

}  // namespace
}  // namespace quillmere
