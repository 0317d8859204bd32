// Between the records and the settings database.
#include "state/SettingsStore.h"

#include <cstddef>
#include <limits>
#include <utility>
#include <variant>

#include "core/Json.h"
#include "core/Texts.h"
#include "platform/UserDefaults.h"
#include "runtime/Clocks.h"
#include "runtime/Threads.h"

namespace quillmere {

namespace {

constexpr float defaultMasterGain = 0.7F;

Data bytesOf(std::string_view text) {
  const auto* const first = reinterpret_cast<const std::byte*>(text.data());
  return {first, first + text.size()};
}

std::string_view textOf(const Data& data) { return {reinterpret_cast<const char*>(data.data()), data.size()}; }

/// For messages.
template <typename Type>
constexpr const char* typeName = "data";
template <>
constexpr const char* typeName<bool> = "a boolean";
template <>
constexpr const char* typeName<double> = "a double";
template <>
constexpr const char* typeName<std::string> = "a string";

const char* typeNameOf(const DefaultsValue& value) {
  return std::visit([]<typename Type>(const Type&) { return typeName<Type>; }, value);
}

/// A double beyond the range of a float becomes infinite, as IEEE 754 narrowing has it.
float narrowed(double value) {
  constexpr double largest = std::numeric_limits<float>::max();
  if (value > largest) return std::numeric_limits<float>::infinity();
  if (value < -largest) return -std::numeric_limits<float>::infinity();
  return static_cast<float>(value);
}

}  // namespace

SettingsStore::SettingsStore(UserDefaults& defaults, const Clocks& clocks, LogSink& log)
    : defaults_(defaults), clocks_(clocks), log_(log, "SettingsStore") {}

DuckRule SettingsStore::defaultDuckRule() {
  return DuckRule{DuckRule::defaultMeetingApps(), DuckRule::defaultMusicApps(), 0.3F, 300, 1500};
}

SettingsStore::Snapshot SettingsStore::load() {
  QUILLMERE_CHECK_ON(home_, "the settings are loaded off the main thread");
  Snapshot snapshot;

  auto profiles = decode(Keys::profiles, &json::decodeProfiles);
  snapshot.profiles =
      profiles ? std::move(*profiles)
               : std::vector<Profile>{Profile{Uuid::random(), translated("Default"), {}, std::nullopt, clocks_.now()}};

  if (const auto text = typed<std::string>(Keys::activeProfileID)) {
    snapshot.activeProfileID = Uuid::parse(*text);
    if (!snapshot.activeProfileID) logIgnored(Keys::activeProfileID, "it is not a UUID");
  }

  const auto masterGain = typed<double>(Keys::masterGain);
  snapshot.masterGain = masterGain ? narrowed(*masterGain) : defaultMasterGain;

  snapshot.outputDeviceUID = typed<std::string>(Keys::outputDeviceUID);
  snapshot.hasCompletedOnboarding = typed<bool>(Keys::onboardingCompleted).value_or(false);

  auto rule = decode(Keys::duckRule, &json::decodeDuckRule);
  snapshot.duckRule = rule ? std::move(*rule) : defaultDuckRule();
  if (!typed<bool>(Keys::browsersInDuckedV1).value_or(false)) {
    snapshot.duckRule.duckedBundleIDs.insert(DuckRule::browserApps().begin(), DuckRule::browserApps().end());
    persistDuckRule(snapshot.duckRule);
    defaults_.set(Keys::browsersInDuckedV1, true);
  }

  snapshot.pauseOnHeadphoneDisconnect = typed<bool>(Keys::pauseOnHeadphoneDisconnect).value_or(true);

  const auto candidates = decode(Keys::focusCandidates, &json::decodeTexts).value_or(std::vector<std::string>{});
  snapshot.focusCandidateBundleIDs = {candidates.begin(), candidates.end()};

  auto apps = decode(Keys::appsState, &json::decodeAudioApps).value_or(std::vector<AudioApp>{});
  for (auto& app : apps) {
    auto key = app.bundleID;
    snapshot.persistedApps.try_emplace(std::move(key), std::move(app));
  }
  return snapshot;
}

void SettingsStore::persistOutputDevice(const std::optional<std::string>& uid) {
  QUILLMERE_CHECK_ON(home_, "a setting is stored off the main thread");
  if (uid) {
    defaults_.set(Keys::outputDeviceUID, *uid);
  } else {
    defaults_.remove(Keys::outputDeviceUID);
  }
}

void SettingsStore::persistActiveProfile(const std::optional<Uuid>& id) {
  QUILLMERE_CHECK_ON(home_, "a setting is stored off the main thread");
  if (id) {
    defaults_.set(Keys::activeProfileID, id->text());
  } else {
    defaults_.remove(Keys::activeProfileID);
  }
}

void SettingsStore::persistDuckRule(const DuckRule& rule) { persist(Keys::duckRule, rule); }

void SettingsStore::persistProfiles(const std::vector<Profile>& profiles) { persist(Keys::profiles, profiles); }

void SettingsStore::persistAppsState(const std::vector<AudioApp>& apps) { persist(Keys::appsState, apps); }

void SettingsStore::persistFocusCandidates(const std::set<std::string>& bundleIDs) {
  persist(Keys::focusCandidates, std::vector<std::string>(bundleIDs.begin(), bundleIDs.end()));
}

template <typename Value>
std::optional<Value> SettingsStore::decode(const char* key,
                                           std::optional<Value> (*read)(std::string_view, std::string*)) const {
  const auto stored = typed<Data>(key);
  if (!stored) return std::nullopt;
  std::string problem;
  auto value = read(textOf(*stored), &problem);
  if (!value) logIgnored(key, problem);
  return value;
}

template <typename Value>
void SettingsStore::persist(const char* key, const Value& value) {
  QUILLMERE_CHECK_ON(home_, "a setting is stored off the main thread");
  if (const auto text = json::encode(value)) {
    defaults_.set(key, bytesOf(*text));
  } else {
    log_.error(logText("%s not stored: it holds a number that is not finite", key));
  }
}

template <typename Type>
std::optional<Type> SettingsStore::typed(const char* key) const {
  auto value = defaults_.object(key);
  if (!value) return std::nullopt;
  if (auto* const wanted = std::get_if<Type>(&*value)) return std::move(*wanted);
  logIgnored(key, std::string("it is ") + typeNameOf(*value) + ", not " + typeName<Type>);
  return std::nullopt;
}

void SettingsStore::logIgnored(const char* key, const std::string& reason) const {
  log_.error(logText("stored %s ignored: %s", key, reason.c_str()));
}

}  // namespace quillmere
