// What the state's tests share: a machine with speakers, a disk that survives it, short names for what is asked often.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "VirtualMachine.h"
#include "core/Json.h"

namespace quillmere {

inline constexpr const char* spotify = "com.spotify.client";
inline constexpr const char* zoom = "us.zoom.xos";
inline constexpr const char* chrome = "com.google.Chrome";
inline constexpr const char* editor = "org.example.editor";

class StateFixture : public ::testing::Test {
 protected:
  StateFixture() { power(); }

  /// A fresh machine on the same disk, as after a restart of the computer.
  void power() {
    box = std::make_unique<VirtualMachine>(disk);
    speakers = box->addSpeakers();
    box->audio.setDefaultOutput(speakers);
    settle();
  }
  /// Ends the program without a word and starts it again on a machine where the same applications run.
  void restart(const std::vector<std::pair<std::string, std::string>>& running) {
    power();
    for (const auto& [bundleID, name] : running) box->launch(bundleID, name);
    box->start();
  }
  /// A music player, a meeting application and an editor run; the state is started and has seen them.
  void startWithThree() {
    box->launch(spotify, "Spotify");
    box->launch(zoom, "Zoom");
    box->launch(editor, "Editor");
    box->start();
    forget();
  }
  /// Drops what was recorded so far.
  void forget() {
    box->engine->clearCalls();
    disk.clearWritten();
  }
  [[nodiscard]] AppState& state() const { return *box->state; }
  [[nodiscard]] const std::vector<EngineCall>& engineCalls() const { return box->engine->calls(); }
  /// Lets what was started so far reach the engine.
  void settle() const { box->time.runUntilIdle(); }
  void storeApps(const std::vector<AudioApp>& apps) {
    disk.set("quillmere.appsState", RecordingDefaults::bytes(json::encode(apps).value()));
  }
  [[nodiscard]] std::vector<AudioApp> storedApps() const {
    return json::decodeAudioApps(disk.text("quillmere.appsState")).value_or(std::vector<AudioApp>{});
  }
  [[nodiscard]] std::vector<Profile> storedProfiles() const {
    return json::decodeProfiles(disk.text("quillmere.profiles")).value_or(std::vector<Profile>{});
  }
  /// A listed application takes or leaves the microphone, and detection notices.
  void microphone(const std::string& bundleID, bool listens) const {
    box->setListening(bundleID, listens);
    box->detect();
  }

  RecordingDefaults disk;
  std::unique_ptr<VirtualMachine> box;
  AudioObjectID speakers = 0;
};

}  // namespace quillmere
