// The whole mixer, on a machine in memory, with a process that draws its windows and says anything at all; which ends,
// hangs and does not read. Whatever was said, the mixer goes on as it should with one that is as ours is.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "LineLauncher.h"
#include "VirtualMachine.h"
#include "remote/RemoteState.h"
#include "remote/SeamVersion.h"
#include "shell/WindowsProcess.h"
#include "support/AnyMessages.h"
#include "support/AnyValues.h"
#include "support/Bytes.h"
#include "support/FormOf.h"
#include "support/Require.h"

namespace {

using namespace quillmere;
using fuzz::formOf;
using nlohmann::json;

const std::vector<std::string>& types() {
  static const std::vector<std::string> list{"call",
                                             "hello",
                                             "windowShown",
                                             "windowBecameKey",
                                             "windowHidden",
                                             "openMainWindow",
                                             "finishOnboarding",
                                             "quit",
                                             "begun",
                                             "taken",
                                             "idle",
                                             "statusItemAvailable",
                                             "statusItemActivated",
                                             "statusItemChosen",
                                             "statusItemScroll",
                                             "statusItemAboutToShow"};
  return list;
}

class World {
 public:
  explicit World(fuzz::Bytes& in) : in_(in) {
    box_.audio.setDefaultOutput(box_.addSpeakers());
    box_.addHeadset();
    for (const auto* each : {"com.spotify.client", "us.zoom.xos", "com.google.Chrome"}) box_.launch(each, each);
    box_.start();
    WindowsIntents intents;
    intents.openMainWindow = [](const ActivationRequest&) {};
    intents.mainWindowShown = [] {};
    intents.finishOnboarding = [] {};
    intents.terminate = [] {};
    intents.halvesDiffer = [](const std::string&) {};
    windows_.emplace(launcher_, *box_.state, box_.runtime, std::move(intents));
  }

  void run() {
    for (int left = 64; left > 0 && !in_.isEmpty(); --left) step();
    endWell();
  }

 private:
  void step() {
    if (!windows_->isRunning()) open();
    switch (in_.below(12)) {
      case 0:
        box_.time.advance(std::chrono::milliseconds(in_.number<std::uint16_t>() % 20000));
        break;
      case 1:
        box_.setListening("us.zoom.xos", in_.flag());
        break;
      case 2:
        line().waiting = in_.flag() ? 0 : WindowsProcess::mostWaiting + 1;
        if (line().waiting == 0) line().events.drained();
        break;
      case 3:
        if (in_.flag()) line().events.closed();
        break;
      case 4:
        windows_->setOldTrayWanted(in_.flag());
        break;
      case 5:
        windows_->open(in_.flag() ? WindowsProcess::mainWindow : WindowsProcess::onboardingWindow);
        break;
      case 6:
        box_.setSounding("com.spotify.client", in_.flag());
        break;
      case 7:
        line().events.received(std::string(in_.longText()));
        break;
      default:
        if (auto message = fuzz::anyMessage(in_, types())) hear(*message);
        break;
    }
    box_.time.runUntilIdle();
    requireOrder();
  }

  void open() {
    windows_->togglePopover({});
    box_.time.runUntilIdle();
    // Who does not say first what it is is not ours, and that is all there is to it.
    if (in_.byte() > 0x10) say({{"type", "hello"}, {"version", seamVersion()}});
    box_.time.runUntilIdle();
  }

  void say(const json& message) { line().events.received(encodeMessage(message)); }

  void hear(const json& message) { say(message); }

  /// What holds at any time.
  void requireOrder() const {
    const auto& apps = *box_.state->apps();
    QUILLMERE_REQUIRE(apps.size() == 3);
    std::set<std::string> identifiers;
    for (const auto& app : apps) identifiers.insert(app.bundleID);
    QUILLMERE_REQUIRE(identifiers == std::set<std::string>{"com.spotify.client", "us.zoom.xos", "com.google.Chrome"});
    for (const auto& window : windows_->windows()) {
      QUILLMERE_REQUIRE(window.identifier == WindowsProcess::mainWindow ||
                        window.identifier == WindowsProcess::onboardingWindow);
    }
  }

  /// A process as ours is.
  void endWell() {
    if (windows_->isRunning()) line().events.closed();
    box_.time.runUntilIdle();
    windows_->setOldTrayWanted(false);
    if (!windows_->isRunning()) windows_->togglePopover({});
    line().waiting = 0;
    box_.time.runUntilIdle();
    QUILLMERE_REQUIRE(windows_->isRunning() && line().isOpen);
    say({{"type", "hello"}, {"version", seamVersion()}});
    RemoteState remote(box_.log, [this](const json& message) { say(message); });
    std::size_t seen = 0;
    const auto exchange = [&] {
      box_.time.runUntilIdle();
      for (; seen < line().sent.size(); ++seen) {
        static_cast<void>(remote.take(line().sent[seen]));
      }
    };
    exchange();
    QUILLMERE_REQUIRE(formOf(remote, box_.runtime) == formOf(*box_.state, box_.runtime));
    remote.setGain(0.25F, "com.spotify.client");
    remote.setPomodoroFocusMinutes(17);
    exchange();
    QUILLMERE_REQUIRE(box_.gainOf("com.spotify.client") == 0.25F);
    QUILLMERE_REQUIRE(box_.engine->lastGain("com.spotify.client") == 0.25F);
    QUILLMERE_REQUIRE(formOf(remote, box_.runtime) == formOf(*box_.state, box_.runtime));
    // And one that does not answer is not waited for for ever.
    const auto before = launcher_.lines.size();
    const auto last = launcher_.lines.back();
    windows_->showAboutPanel("");
    for (int second = 0; second < 90 && !last->isGivenUp; ++second) box_.time.advance(std::chrono::seconds(1));
    QUILLMERE_REQUIRE(last->isGivenUp && launcher_.lines.size() >= before);
  }

  fuzz::Bytes& in_;
  RecordingDefaults disk_;
  VirtualMachine box_{disk_};
  LineLauncher::Line& line() { return *launcher_.lines.back(); }

  LineLauncher launcher_;
  std::optional<WindowsProcess> windows_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes in(data, size);
  World(in).run();
  return 0;
}
