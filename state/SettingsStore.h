// What survives a restart: all of it is read once at the start, and each kind of record has a write of its own.
// Keys, types and defaults are listed in docs/settings.md.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/AudioApp.h"
#include "core/DuckRule.h"
#include "core/Profile.h"
#include "core/Uuid.h"
#include "runtime/HomeThread.h"
#include "runtime/Logger.h"

namespace quillmere {

class Clocks;
class UserDefaults;

/// [main] throughout. Nothing here fails towards the caller: unreadable data counts as absent and stays where it is
/// until a later write replaces it; a value that can't be written leaves the old one in place. Both are logged.
class SettingsStore {
 public:
  /// The keys, as they stand in the database.
  struct Keys {
    static constexpr const char* profiles = "quillmere.profiles";
    static constexpr const char* activeProfileID = "quillmere.activeProfileID";
    static constexpr const char* masterGain = "quillmere.masterGain";
    static constexpr const char* outputDeviceUID = "quillmere.outputDeviceUID";
    static constexpr const char* onboardingCompleted = "quillmere.onboardingCompleted";
    static constexpr const char* duckRule = "quillmere.duckRule";
    static constexpr const char* browsersInDuckedV1 = "quillmere.duckRule.browsersInDuckedV1";
    static constexpr const char* pauseOnHeadphoneDisconnect = "quillmere.pauseOnHeadphoneDisconnect";
    static constexpr const char* focusCandidates = "quillmere.focusCandidates";
    static constexpr const char* appsState = "quillmere.appsState";
  };

  struct Snapshot {
    std::vector<Profile> profiles;
    /// May name a profile that doesn't exist.
    std::optional<Uuid> activeProfileID;
    float masterGain = 0.7F;
    std::optional<std::string> outputDeviceUID;
    bool hasCompletedOnboarding = false;
    DuckRule duckRule;
    bool pauseOnHeadphoneDisconnect = true;
    std::set<std::string> focusCandidateBundleIDs;
    /// By bundleID; where one was stored twice, the first.
    std::map<std::string, AudioApp> persistedApps;
  };

  /// All three outlive the store. The clocks date the profile of a first run.
  SettingsStore(UserDefaults& defaults, const Clocks& clocks, LogSink& log);

  /// Everything that is stored, with the defaults of a first run for what isn't. Adds the browsers to the ducked
  /// applications once per installation, and writes that down.
  [[nodiscard]] Snapshot load();

  // An absent value removes the key.
  void persistOutputDevice(const std::optional<std::string>& uid);
  void persistActiveProfile(const std::optional<Uuid>& id);

  void persistDuckRule(const DuckRule& rule);
  void persistProfiles(const std::vector<Profile>& profiles);
  /// An application that is not in the list is forgotten by later runs.
  void persistAppsState(const std::vector<AudioApp>& apps);
  void persistFocusCandidates(const std::set<std::string>& bundleIDs);

  /// The rule that a first run starts with.
  [[nodiscard]] static DuckRule defaultDuckRule();

 private:
  template <typename Value>
  std::optional<Value> decode(const char* key,
                              std::optional<Value> (*read)(std::string_view text, std::string* problem)) const;
  template <typename Value>
  void persist(const char* key, const Value& value);
  template <typename Type>
  std::optional<Type> typed(const char* key) const;
  void logIgnored(const char* key, const std::string& reason) const;

  HomeThread home_;
  UserDefaults& defaults_;
  const Clocks& clocks_;
  Logger log_;
};

}  // namespace quillmere
