// Fields in, calls out.
#include "remote/RemoteState.h"

#include <algorithm>
#include <exception>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "remote/MessageType.h"
#include "runtime/Threads.h"
#include "wire/Forms.h"
#include "wire/Messages.h"

namespace quillmere {

using nlohmann::json;

/// The newest value of each field that may not change yet.
struct RemoteState::HeldBack {
  std::map<std::string, json> values;
};

RemoteState::RemoteState(LogSink& log, SendMessage send)
    : log_(log), send_(std::move(send)), heldBack_(std::make_unique<HeldBack>()) {}

RemoteState::~RemoteState() = default;

bool RemoteState::take(const json& message) {
  QUILLMERE_CHECK_ON(home_, "the remote state takes a message off the main thread");
  const auto type = messageType(message);
  try {
    if (type == wire::fields) {
      for (const auto& [name, value] : message.at("values").items()) takeField(name, value);
    } else if (type == wire::field) {
      takeField(message.at("name").get<std::string>(), message.at("value"));
    } else if (type == wire::performed) {
      notePerformed();
    } else {
      return false;
    }
  } catch (const std::exception& error) {
    Logger(log_, "RemoteState").error("ignored \"" + type + "\": " + error.what());
  }
  return true;
}

void RemoteState::takeField(const std::string& name, const json& value) {
  if (isHeldBack(name)) {
    heldBack_->values[name] = value;
  } else {
    setField(name, value);
  }
}

void RemoteState::setField(const std::string& name, const json& value) {
  visitOwnFields([&](const char* known, auto& field) {
    if (name == known) field.set(value.get<std::remove_cvref_t<decltype(field.get())>>());
  });
}

bool RemoteState::isHeldBack(const std::string& name) const {
  return performed_ < lastLevelCall_ && (name == "apps" || name == "masterGain");
}

void RemoteState::notePerformed() {
  ++performed_;
  if (performed_ < lastLevelCall_) return;
  for (const auto& [name, value] : std::exchange(heldBack_->values, {})) setField(name, value);
}

template <typename... Arguments>
void RemoteState::call(const char* name, const Arguments&... arguments) {
  QUILLMERE_CHECK_ON(home_, "an operation of the mixer is called off the main thread");
  ++sent_;
  auto list = json::array();
  (list.push_back(json(arguments)), ...);
  send_({{wire::type, wire::call}, {"name", name}, {"arguments", std::move(list)}});
}

void RemoteState::setGain(float gain, std::string bundleID) {
  call("setGain", gain, bundleID);
  lastLevelCall_ = sent_;
  apps_.modify([&](std::vector<AudioApp>& apps) {
    const auto app =
        std::find_if(apps.begin(), apps.end(), [&](const AudioApp& each) { return each.bundleID == bundleID; });
    if (app != apps.end()) app->gain = gain;
  });
}

void RemoteState::setMasterGain(float gain) {
  call("setMasterGain", gain);
  lastLevelCall_ = sent_;
  masterGain_.set(gain);
}

void RemoteState::toggleMute(std::string bundleID) { call("toggleMute", bundleID); }
void RemoteState::setRouting(std::optional<std::string> deviceUID, std::string bundleID) {
  call("setRouting", deviceUID, bundleID);
}
void RemoteState::completeOnboarding() { call("completeOnboarding"); }
void RemoteState::setOutputDeviceUID(std::optional<std::string> deviceUID) { call("setOutputDeviceUID", deviceUID); }
void RemoteState::setDuckRule(DuckRule rule) { call("setDuckRule", rule); }
void RemoteState::setFocusCandidateBundleIDs(std::set<std::string> bundleIDs) {
  call("setFocusCandidateBundleIDs", bundleIDs);
}
void RemoteState::setPauseOnHeadphoneDisconnect(bool pauses) { call("setPauseOnHeadphoneDisconnect", pauses); }
void RemoteState::setPomodoroFocusMinutes(int minutes) { call("setPomodoroFocusMinutes", minutes); }
void RemoteState::setPomodoroBreakMinutes(int minutes) { call("setPomodoroBreakMinutes", minutes); }
void RemoteState::setPomodoroFocusBundleID(std::optional<std::string> bundleID) {
  call("setPomodoroFocusBundleID", bundleID);
}
void RemoteState::addProfile(std::string name) { call("addProfile", name); }
void RemoteState::deleteProfile(Uuid id) { call("deleteProfile", id); }
void RemoteState::updateProfile(Profile profile) { call("updateProfile", profile); }
void RemoteState::duplicateProfile(Uuid id) { call("duplicateProfile", id); }
void RemoteState::applyProfile(Uuid id) { call("applyProfile", id); }
void RemoteState::toggleWhisperMode() { call("toggleWhisperMode"); }
void RemoteState::startSleepTimer(int minutes) { call("startSleepTimer", minutes); }
void RemoteState::cancelSleepTimer() { call("cancelSleepTimer"); }
void RemoteState::startPomodoroFocus() { call("startPomodoroFocus"); }
void RemoteState::cancelPomodoro(bool silently) { call("cancelPomodoro", silently); }
void RemoteState::skipPomodoroToBreak() { call("skipPomodoroToBreak"); }
void RemoteState::skipPomodoroToIdle() { call("skipPomodoroToIdle"); }

}  // namespace quillmere
