// The mixer's operations by name, with arguments that travel as a list.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>
#include <utility>

#include "state/MixerState.h"
#include "wire/Forms.h"

namespace quillmere::wire {

/// Calls `visit(name, operation)` for each operation of the mixer.
template <typename Visitor>
void visitCalls(const Visitor& visit) {
  visit("setGain", &MixerState::setGain);
  visit("toggleMute", &MixerState::toggleMute);
  visit("setRouting", &MixerState::setRouting);
  visit("setMasterGain", &MixerState::setMasterGain);
  visit("completeOnboarding", &MixerState::completeOnboarding);
  visit("setOutputDeviceUID", &MixerState::setOutputDeviceUID);
  visit("setDuckRule", &MixerState::setDuckRule);
  visit("setFocusCandidateBundleIDs", &MixerState::setFocusCandidateBundleIDs);
  visit("setPauseOnHeadphoneDisconnect", &MixerState::setPauseOnHeadphoneDisconnect);
  visit("setPomodoroFocusMinutes", &MixerState::setPomodoroFocusMinutes);
  visit("setPomodoroBreakMinutes", &MixerState::setPomodoroBreakMinutes);
  visit("setPomodoroFocusBundleID", &MixerState::setPomodoroFocusBundleID);
  visit("addProfile", &MixerState::addProfile);
  visit("deleteProfile", &MixerState::deleteProfile);
  visit("updateProfile", &MixerState::updateProfile);
  visit("duplicateProfile", &MixerState::duplicateProfile);
  visit("applyProfile", &MixerState::applyProfile);
  visit("toggleWhisperMode", &MixerState::toggleWhisperMode);
  visit("startSleepTimer", &MixerState::startSleepTimer);
  visit("cancelSleepTimer", &MixerState::cancelSleepTimer);
  visit("startPomodoroFocus", &MixerState::startPomodoroFocus);
  visit("cancelPomodoro", &MixerState::cancelPomodoro);
  visit("skipPomodoroToBreak", &MixerState::skipPomodoroToBreak);
  visit("skipPomodoroToIdle", &MixerState::skipPomodoroToIdle);
}

/// Throws where the list is too short or holds something else.
template <typename... Parameters>
void perform(MixerState& state, void (MixerState::*operation)(Parameters...), const nlohmann::json& arguments) {
  [&]<std::size_t... Index>(std::index_sequence<Index...>) {
    (state.*operation)(arguments.at(Index).template get<std::remove_cvref_t<Parameters>>()...);
  }(std::index_sequence_for<Parameters...>{});
}

}  // namespace quillmere::wire
