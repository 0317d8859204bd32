// The one object through which the application state reaches the engine. It forwards and keeps nothing.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>

#include "runtime/Stream.h"

namespace quillmere {

class ProcessTapEngine;

/// [any] throughout; every call returns as soon as the engine has queued the work.
class DriverClient {
 public:
  /// Linear levels by application.
  using Levels = std::map<std::string, float>;
  static constexpr Duration levelsPeriod = std::chrono::milliseconds(100);

  /// Both outlive this and its streams.
  DriverClient(ProcessTapEngine& engine, Executor& background);
  ~DriverClient();
  DriverClient(const DriverClient&) = delete;
  DriverClient& operator=(const DriverClient&) = delete;

  /// The process-wide instance; stops the process if none is installed.
  static DriverClient& shared();
  /// Makes this the process-wide instance, for as long as it lives. [main]
  void install();

  /// See ProcessTapEngine::applyGain.
  void applyGain(float gain, const std::string& bundleID);
  /// Mute is gain 0; unmuting is exactly 1, whatever the application's own gain: send that afterwards.
  void applyMute(bool muted, const std::string& bundleID);
  /// See ProcessTapEngine::applyRouting.
  void applyRouting(const std::optional<std::string>& deviceUID, const std::string& bundleID);

  /// Levels by application, ten times a second. Carries none yet: every element is empty, and a consumer that wants
  /// changes only gets no second one.
  [[nodiscard]] Stream<Levels> levelsStream() const;

  [[nodiscard]] ProcessTapEngine& engine() const { return engine_; }

 private:
  ProcessTapEngine& engine_;
  Executor& background_;
};

}  // namespace quillmere
