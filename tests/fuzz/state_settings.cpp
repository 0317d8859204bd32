// The store of settings over a database that holds anything: what can be read is read, what can't counts as absent and
// stays where it is, and what is written is what the next run reads.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "core/Json.h"
#include "runtime/VirtualTime.h"
#include "state/SettingsStore.h"
#include "support/AnySettings.h"
#include "support/Bytes.h"
#include "support/Require.h"
#include "support/Silence.h"

namespace {

using namespace quillmere;
using Keys = SettingsStore::Keys;

bool isSameNumber(float left, float right) { return left == right || (std::isnan(left) && std::isnan(right)); }

/// Values of a wrong type, and texts of a wrong form, are as if they were not there.
void requireRead(const RecordingDefaults& disk, const SettingsStore::Snapshot& got) {
  QUILLMERE_REQUIRE(got.hasCompletedOnboarding == disk.boolean(Keys::onboardingCompleted).value_or(false));
  QUILLMERE_REQUIRE(got.pauseOnHeadphoneDisconnect == disk.boolean(Keys::pauseOnHeadphoneDisconnect).value_or(true));
  QUILLMERE_REQUIRE(got.outputDeviceUID == disk.string(Keys::outputDeviceUID));
  const auto id = disk.string(Keys::activeProfileID);
  QUILLMERE_REQUIRE(got.activeProfileID == (id ? Uuid::parse(*id) : std::nullopt));
  const auto master = disk.real(Keys::masterGain);
  if (!master) {
    QUILLMERE_REQUIRE(got.masterGain == 0.7F);
  } else if (std::isfinite(got.masterGain)) {
    QUILLMERE_REQUIRE(std::abs(got.masterGain - *master) <= std::abs(*master) * 1e-6 + 1e-37);
  } else {
    QUILLMERE_REQUIRE(std::isnan(*master) == std::isnan(got.masterGain) && !(std::abs(*master) < 3.4e38));
  }
  QUILLMERE_REQUIRE(!got.profiles.empty() || disk.text(Keys::profiles).find('[') != std::string::npos);
  const auto apps = json::decodeAudioApps(disk.text(Keys::appsState));
  std::set<std::string> seen;
  for (const auto& app : apps.value_or(std::vector<AudioApp>{})) {
    const auto found = got.persistedApps.find(app.bundleID);
    QUILLMERE_REQUIRE(found != got.persistedApps.end());
    // Of several the first.
    if (seen.insert(app.bundleID).second) QUILLMERE_REQUIRE(found->second == app);
  }
  QUILLMERE_REQUIRE(seen.size() == got.persistedApps.size());
}

void requireSame(const SettingsStore::Snapshot& one, const SettingsStore::Snapshot& other, bool profilesAreStored) {
  // A fresh "Default" has another identity each time.
  if (profilesAreStored) QUILLMERE_REQUIRE(one.profiles == other.profiles);
  QUILLMERE_REQUIRE(one.activeProfileID == other.activeProfileID);
  QUILLMERE_REQUIRE(isSameNumber(one.masterGain, other.masterGain));
  QUILLMERE_REQUIRE(one.outputDeviceUID == other.outputDeviceUID);
  QUILLMERE_REQUIRE(one.hasCompletedOnboarding == other.hasCompletedOnboarding);
  QUILLMERE_REQUIRE(one.duckRule == other.duckRule);
  QUILLMERE_REQUIRE(one.pauseOnHeadphoneDisconnect == other.pauseOnHeadphoneDisconnect);
  QUILLMERE_REQUIRE(one.focusCandidateBundleIDs == other.focusCandidateBundleIDs);
  QUILLMERE_REQUIRE(one.persistedApps == other.persistedApps);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes in(data, size);
  fuzz::Silence log;
  static VirtualTime time;
  RecordingDefaults disk;
  fuzz::fill(in, disk);
  SettingsStore store(disk, time, log);
  const auto before = disk.values();
  const auto first = store.load();
  requireRead(disk, first);
  const std::set<std::string> migrated{Keys::duckRule, Keys::browsersInDuckedV1};
  const bool isMigrated = RecordingDefaults(before).boolean(Keys::browsersInDuckedV1) == true;
  QUILLMERE_REQUIRE(fuzz::isUntouched(before, disk.values(), isMigrated ? std::set<std::string>{} : migrated));

  // The second run finds what the first has left.
  disk.clearWritten();
  const auto second = store.load();
  QUILLMERE_REQUIRE(disk.written().empty());
  const bool profilesAreStored = json::decodeProfiles(disk.text(Keys::profiles)).has_value();
  requireSame(first, second, profilesAreStored);

  // What is written is what is read. Nothing that was read has a number without a form.
  store.persistProfiles(second.profiles);
  store.persistActiveProfile(second.activeProfileID);
  store.persistOutputDevice(second.outputDeviceUID);
  store.persistDuckRule(second.duckRule);
  store.persistFocusCandidates(second.focusCandidateBundleIDs);
  std::vector<AudioApp> apps;
  for (const auto& [bundleID, app] : second.persistedApps) apps.push_back(app);
  store.persistAppsState(apps);
  requireSame(second, store.load(), true);
  return 0;
}
