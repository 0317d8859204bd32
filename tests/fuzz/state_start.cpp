// The whole state started over a database that holds anything: it starts, runs, stores, and the next run begins where
// this one ended. What it could not read stays until something is written in its place.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "VirtualMachine.h"
#include "core/Json.h"
#include "support/AnySettings.h"
#include "support/Bytes.h"
#include "support/Require.h"

namespace {

using namespace quillmere;
using Keys = SettingsStore::Keys;

constexpr const char* player = "com.spotify.client";
constexpr const char* meeting = "us.zoom.xos";

void power(VirtualMachine& box) {
  // Without a volume of its own, so that the stored master counts.
  box.audio.setDefaultOutput(box.audio.addDevice({"speakers", "Speakers"}));
  for (const auto* each : {player, meeting}) box.launch(each, each);
  box.start();
}

bool isSameNumber(float left, float right) { return left == right || (std::isnan(left) && std::isnan(right)); }

/// Each application has what was stored of it, and the engine has been told so.
void requireRestored(const VirtualMachine& box, const std::map<std::string, AudioApp>& stored) {
  for (const auto* each : {player, meeting}) {
    const auto app = box.app(each);
    QUILLMERE_REQUIRE(app.has_value());
    const auto found = stored.find(each);
    if (found == stored.end()) {
      QUILLMERE_REQUIRE(app->gain == 1.0F && !app->muted && !app->routedDeviceUID);
      QUILLMERE_REQUIRE(!box.engine->lastGain(each).has_value());
      continue;
    }
    const auto& was = found->second;
    QUILLMERE_REQUIRE(app->gain == was.gain && app->muted == was.muted && app->routedDeviceUID == was.routedDeviceUID);
    const auto told = box.engine->lastGain(each);
    if (was.muted) {
      QUILLMERE_REQUIRE(told == 0.0F);
    } else if (std::abs(was.gain - 1.0F) > 0.005F) {
      QUILLMERE_REQUIRE(told == was.gain);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes in(data, size);
  RecordingDefaults disk;
  fuzz::fill(in, disk);
  const auto before = disk.values();
  std::map<std::string, AudioApp> stored;
  for (const auto& app : json::decodeAudioApps(disk.text(Keys::appsState)).value_or(std::vector<AudioApp>{})) {
    stored.try_emplace(app.bundleID, app);
  }
  const std::set<std::string> writtenAtStart{Keys::duckRule, Keys::browsersInDuckedV1, Keys::pauseOnHeadphoneDisconnect,
                                             Keys::focusCandidates};
  std::vector<Profile> profiles;
  DuckRule rule;
  {
    VirtualMachine box(disk);
    power(box);
    QUILLMERE_REQUIRE(fuzz::isUntouched(before, disk.values(), writtenAtStart));
    requireRestored(box, stored);
    box.time.advance(std::chrono::seconds(5));
    QUILLMERE_REQUIRE(fuzz::isUntouched(before, disk.values(), writtenAtStart));

    // A person goes on with it.
    box.state->setGain(0.5F, player);
    box.state->toggleMute(meeting);
    box.state->addProfile("Evening");
    box.state->setMasterGain(0.25F);
    QUILLMERE_REQUIRE(!json::decodeProfiles(disk.text(Keys::profiles)).value_or(std::vector<Profile>{}).empty());
    profiles = *box.state->profiles();
    rule = *box.state->duckRule();
    box.time.runUntilIdle();
    QUILLMERE_REQUIRE(box.engine->lastGain(player) == 0.5F);
  }
  const auto wasMuted = stored.contains(meeting) && stored.at(meeting).muted;
  VirtualMachine box(disk);
  power(box);
  QUILLMERE_REQUIRE(box.gainOf(player) == 0.5F && box.engine->lastGain(player).has_value());
  QUILLMERE_REQUIRE(box.app(meeting)->muted == !wasMuted);
  QUILLMERE_REQUIRE(*box.state->profiles() == profiles && *box.state->duckRule() == rule);
  QUILLMERE_REQUIRE(isSameNumber(*box.state->masterGain(), 0.25F));
  return 0;
}
