// What the state's tests share: a machine with speakers, a disk that survives it, short names for what is asked often.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VirtualMachine.h"
#include "core/Profile.h"

namespace quillmere {

inline constexpr const char* spotify = "com.spotify.client";
inline constexpr const char* zoom = "us.zoom.xos";
inline constexpr const char* chrome = "com.google.Chrome";
inline constexpr const char* editor = "org.example.editor";

class StateFixture : public ::testing::Test {
 public:
  ~StateFixture() override;

 protected:
  StateFixture();

  /// A fresh machine on the same disk, as after a restart of the computer.
  void power();
  /// Ends the program without a word and starts it again on a machine where the same applications run.
  void restart(const std::vector<std::pair<std::string, std::string>>& running);
  /// A music player, a meeting application and an editor run; the state is started and has seen them.
  void startWithThree();
  /// Drops what was recorded so far.
  void forget();
  [[nodiscard]] AppState& state() const { return *box->state; }
  [[nodiscard]] const std::vector<EngineCall>& engineCalls() const { return box->engine->calls(); }
  /// Lets what was started so far reach the engine.
  void settle() const;
  void storeApps(const std::vector<AudioApp>& apps);
  [[nodiscard]] std::vector<AudioApp> storedApps() const;
  [[nodiscard]] std::vector<Profile> storedProfiles() const;
  /// A listed application takes or leaves the microphone, and detection notices.
  void microphone(const std::string& bundleID, bool listens) const;

  RecordingDefaults disk;
  std::unique_ptr<VirtualMachine> box;
  AudioObjectID speakers = 0;
};

}  // namespace quillmere
