// The windows' end of the seam, hearing anything at all from the mixer: the state that follows it, and the icon that is
// drawn for it.
#include <cstddef>
#include <cstdint>
#include <deque>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/memory/MemoryStatusItem.h"
#include "remote/MessageType.h"
#include "remote/MixerHost.h"
#include "remote/RemoteState.h"
#include "remote/RemoteStatusItem.h"
#include "runtime/VirtualTime.h"
#include "support/AnyMessages.h"
#include "support/AnyValues.h"
#include "support/Bytes.h"
#include "support/FormOf.h"
#include "support/Require.h"
#include "support/Silence.h"

namespace {

using namespace quillmere;
using fuzz::formOf;
using nlohmann::json;

/// Performs what changes a field by itself, as the mixer does.
class PlainState final : public MixerState {
 public:
  PlainState() {
    apps_.set({{"com.spotify.client", "Spotify", 0.5F, false, std::nullopt}, {"x", "X", 1.0F, false, std::nullopt}});
  }
#define OPERATION(name, parameters, arguments) \
  void name parameters override { (ignore arguments); }
#define ASSIGNMENT(name, parameters, arguments, field) \
  void name parameters override { field##_.set arguments; }
#define LEVEL_OPERATION(name, parameters, arguments) \
  void name parameters override { setLevel arguments; }
#include "state/MixerOperations.def"

 private:
  template <typename... Arguments>
  static void ignore(const Arguments&...) {}
  void setLevel(float gain, const std::string& bundleID) {
    apps_.modify([&](auto& apps) {
      for (auto& app : apps) {
        if (app.bundleID == bundleID) app.gain = gain;
      }
    });
  }
};

class World {
 public:
  explicit World(fuzz::Bytes& in) : in_(in) {}

  void run() {
    // The mixer's messages, with anything in between them.
    MixerHost host(
        mixer_, runtime_, [this](const json& message) { toRemote_.push_back(message); }, [] { return false; });
    while (!in_.isEmpty()) step(host);
    // A mixer that begins anew has all of it as it has it, whatever was said before.
    while (!toMixer_.empty() || !toRemote_.empty()) deliver(host);
    fuzzCalls();
    while (!toMixer_.empty() || !toRemote_.empty()) deliver(host);
    QUILLMERE_REQUIRE(formOf(remote_, runtime_) == formOf(mixer_, runtime_));
    QUILLMERE_REQUIRE(*mixer_.masterGain() == 0.25F && *remote_.pomodoroFocusMinutes() == 17);
  }

 private:
  void step(MixerHost& host) {
    static const std::vector<std::string> types{
        "field", "fields", "performed", "statusItemShow", "statusItemMenu", "statusItemToolTip", "call"};
    switch (in_.below(5)) {
      case 0:
        if (const auto message = fuzz::anyMessage(in_, types)) hear(*message);
        break;
      case 1:
        hear(anyField());
        break;
      case 2:
        deliver(host);
        break;
      case 3:
        remote_.setGain(fuzz::Any<float>::make(in_), fuzz::anyText(in_));
        break;
      default:
        remote_.setMasterGain(fuzz::Any<float>::make(in_));
        break;
    }
  }

  /// A field of a right name, with a value of the form that it has now, a little bent.
  json anyField() {
    std::vector<std::pair<std::string, json>> known;
    const auto all = decodeMessage(formOf(mixer_, runtime_));
    const auto& values = all->at("values");
    const auto at = std::next(values.begin(), static_cast<std::ptrdiff_t>(in_.below(values.size())));
    return {{"type", "field"},
            {"name", at.key()},
            {"value", in_.flag() ? fuzz::anyJson(in_) : fuzz::bent(in_, at.value())}};
  }

  void hear(const json& message) {
    const auto type = messageType(message);
    const bool isState = type == "field" || type == "fields" || type == "performed";
    QUILLMERE_REQUIRE(remote_.take(message) == isState);
    if (isState) return;
    const auto menu = item_.menu();
    const bool isIcon = type == "statusItemShow" || type == "statusItemMenu" || type == "statusItemToolTip";
    QUILLMERE_REQUIRE(icon_.take(message) == isIcon);
    if (type != "statusItemMenu") QUILLMERE_REQUIRE(item_.menu() == menu);
  }

  void deliver(MixerHost& host) {
    if (!toMixer_.empty()) {
      QUILLMERE_REQUIRE(host.take(toMixer_.front()));
      toMixer_.pop_front();
    }
    if (!toRemote_.empty()) {
      QUILLMERE_REQUIRE(remote_.take(*decodeMessage(encodeMessage(toRemote_.front()))));
      toRemote_.pop_front();
    }
  }

  /// A person at the windows, and then the whole state once more: nothing that was said wrongly is left in the way.
  void fuzzCalls() {
    remote_.setMasterGain(0.25F);
    // A step of a wheel starts from the last one, whatever the mixer has not answered yet.
    QUILLMERE_REQUIRE(*remote_.masterGain() == 0.25F);
    remote_.setPomodoroFocusMinutes(17);
    const MixerHost again(
        mixer_, runtime_, [this](const json& message) { toRemote_.push_back(message); }, [] { return false; });
    QUILLMERE_REQUIRE(remote_.take(toRemote_.back()));
    QUILLMERE_REQUIRE(*remote_.masterGain() == 0.25F);
    toRemote_.pop_back();
    mixer_.setMasterGain(0.125F);  // Older news, which the call follows.
    // Other fields come with the next change of the mixer's.
    const auto all = decodeMessage(formOf(mixer_, runtime_));
    toRemote_.push_back(*all);
  }

  fuzz::Bytes& in_;
  fuzz::Silence log_;
  VirtualTime time_;
  Runtime runtime_ = time_.runtime(log_);
  PlainState mixer_;
  std::deque<json> toRemote_;
  std::deque<json> toMixer_;
  RemoteState remote_{log_,
                      [this](const json& message) { toMixer_.push_back(*decodeMessage(encodeMessage(message))); }};
  MemoryStatusItem item_;
  StatusItemHost icon_{item_, log_, [](const json&) {}};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes in(data, size);
  World(in).run();
  return 0;
}
