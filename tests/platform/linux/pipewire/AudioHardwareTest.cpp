// The contract of the audio port on PipeWire.
#include <chrono>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/ChildProcess.h"
#include "support/Machine.h"
#include "support/MonitorRecorder.h"
#include "support/Session.h"
#include "tests/platform/contract/AudioHardwareContract.h"

namespace quillmere::test {
namespace {

/// What the signal player plays.
constexpr float ownLevel = 0.5F;

class PipeWireHost {
 public:
  PipeWireHost() {
    if (!session::isPrivate()) throw std::runtime_error("run this with scripts/private-session --no-display -- ...");
    machine_ = std::make_unique<Machine>();
  }

  AudioHardware& hardware() { return machine_->audio; }
  void run() { machine_->main.runAll(); }
  bool eventually(const std::function<bool()>& condition) {
    return test::eventually(
        [&] {
          run();
          return condition();
        },
        std::chrono::seconds(10));
  }
  std::string speakers() { return session::sinkA; }
  std::string microphone() { return "quillmere_test_microphone"; }
  void plug(const std::string& uid) { session::addSink(uid); }
  /// One that goes with a process of ours: to take it away nobody has to ask the daemon for anything.
  void plugHeadset(const std::string& uid) {
    const auto [headset, isNew] = headsets_.emplace(uid, std::vector<std::string>{"pw-cli"});
    headset->second.say("create-node adapter { factory.name=support.null-audio-sink node.name=" + uid +
                        " media.class=Audio/Sink audio.position=[FL FR] device.bus=usb device.form-factor=headset }");
  }
  void unplug(const std::string& uid) {
    recorders_.erase(uid);
    session::removeSink(uid);
  }
  void unplugForAGap(const std::string& uid) {
    sessionManager_.emplace();
    headsets_.erase(uid);
  }
  void moveDefault(const std::string& uid) {
    sessionManager_.reset();
    // A session manager that has only just started, or only just met the device, may miss the first word.
    const bool isMoved = test::eventually(
        [&] {
          test::run(
              {"pw-metadata", "0", "default.configured.audio.sink", "{\"name\":\"" + uid + "\"}", "Spa:String:JSON"});
          return test::eventually(
              [&] { return test::run({"pw-metadata", "0", "default.audio.sink"}).find('"' + uid + '"') != npos; },
              std::chrono::seconds(1));
        },
        std::chrono::seconds(10));
    if (!isMoved) throw std::runtime_error("the session manager does not make " + uid + " the default");
  }
  void moveVolume(const std::string& uid, float position) {
    test::run({"pactl", "set-sink-volume", uid, std::to_string(std::lround(position * 100.0F)) + "%"});
  }
  void restart() {
    recorders_.clear();
    session::control("restart", {"pipewire"});
  }
  void launch(const std::string& identifier) {
    players_.insert_or_assign(identifier, std::make_unique<ChildProcess>(playSignal({"--app-id", identifier})));
  }
  void pause(const std::string& identifier) { players_.at(identifier)->say("pause"); }
  void resume(const std::string& identifier) { players_.at(identifier)->say("play"); }
  void quit(const std::string& identifier) { players_.erase(identifier); }
  float level(const std::string& uid) {
    auto& recorder = recorders_[uid];
    if (!recorder) recorder = std::make_unique<MonitorRecorder>(uid);
    return recorder->nextPeak() / ownLevel;
  }

 private:
  static constexpr auto npos = std::string::npos;
  std::unique_ptr<Machine> machine_;
  std::optional<session::HeldDaemon> sessionManager_;
  std::map<std::string, ChildProcess> headsets_;
  std::map<std::string, std::unique_ptr<ChildProcess>> players_;
  std::map<std::string, std::unique_ptr<MonitorRecorder>> recorders_;
};

}  // namespace
}  // namespace quillmere::test

namespace quillmere {

INSTANTIATE_TYPED_TEST_SUITE_P(PipeWire, AudioHardwareContract, test::PipeWireHost);

}  // namespace quillmere
