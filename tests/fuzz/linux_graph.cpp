// What an audio daemon may tell: any objects with any properties, in any order, ids given again. After each event the
// picture of it is whole: nothing hangs in the air, no number stands for two things, texts can be shown.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "pipewire/AudioSnapshot.h"
#include "pipewire/GraphModel.h"
#include "pipewire/PropertyValue.h"
#include "support/Bytes.h"
#include "support/Require.h"
#include "support/Silence.h"
#include "text/CleanText.h"

namespace {

using namespace quillmere;
using namespace quillmere::pipewire;

constexpr std::array<std::string_view, 40> keys{"media.class",
                                                "client.id",
                                                "device.id",
                                                "object.serial",
                                                "node.name",
                                                "node.description",
                                                "node.nick",
                                                "client.api",
                                                "node.link-group",
                                                "stream.monitor",
                                                "application.name",
                                                "application.id",
                                                "media.role",
                                                "application.process.id",
                                                "pipewire.sec.pid",
                                                "port.id",
                                                "node.id",
                                                "port.direction",
                                                "port.monitor",
                                                "port.control",
                                                "audio.channel",
                                                "link.output.node",
                                                "link.output.port",
                                                "link.input.node",
                                                "link.input.port",
                                                "device.api",
                                                "device.bus",
                                                "api.bluez5.codec",
                                                "api.bluez5.profile",
                                                "card.profile.device",
                                                "device.form-factor",
                                                "application.process.binary",
                                                "pipewire.access.portal.app_id",
                                                "stream.capture.sink",
                                                "target.object",
                                                "device.profile.name",
                                                "media.name",
                                                "node.passive",
                                                "node.virtual",
                                                "factory.name"};
constexpr std::array<std::string_view, 40> values{"Audio/Sink",
                                                  "Audio/Duplex",
                                                  "Audio/Source",
                                                  "Audio/Source/Virtual",
                                                  "Stream/Output/Audio",
                                                  "Stream/Input/Audio",
                                                  "jack",
                                                  "pipewire-pulse",
                                                  "true",
                                                  "1",
                                                  "0",
                                                  "2",
                                                  "3",
                                                  "4",
                                                  "5",
                                                  "6",
                                                  "7",
                                                  "in",
                                                  "out",
                                                  "FL",
                                                  "alsa",
                                                  "usb",
                                                  "bluetooth",
                                                  "pci",
                                                  "hdmi",
                                                  "speakers",
                                                  "app.quillmere.tap",
                                                  "a",
                                                  "a,b",
                                                  "b",
                                                  "4294967295",
                                                  "4294967296",
                                                  "-1",
                                                  "ALSA plug-in [x]",
                                                  "Playback",
                                                  "speakers\n",
                                                  "\xFF\xFE",
                                                  "\x1B[2J",
                                                  "",
                                                  "bluez_output.1"};

/// As the daemon's library hands it out: it ends with its first null byte.
std::string anyValue(fuzz::Bytes& in) {
  const auto value = in.byte() < 0xC0 ? in.oneOf(values) : in.text();
  return std::string(value.substr(0, value.find('\0')));
}

Properties anyProperties(fuzz::Bytes& in) {
  Properties properties;
  for (auto left = in.below(8); left > 0; --left) {
    const auto key = in.byte() < 0xF0 ? in.oneOf(keys) : in.text();
    properties[std::string(key)] = anyValue(in);
  }
  return properties;
}

std::vector<float> anyVolumes(fuzz::Bytes& in) {
  std::vector<float> volumes;
  for (auto left = in.below(5); left > 0; --left) {
    volumes.push_back(in.flag() ? static_cast<float>(in.byte()) / 128.0F : in.number<float>());
  }
  return volumes;
}

template <typename Records, typename Member>
void requireDistinct(const Records& records, Member member) {
  std::set<AudioObjectID> seen;
  for (const auto& record : records) {
    const auto id = record.*member;
    QUILLMERE_REQUIRE(id == 0 || seen.insert(id).second);
  }
}

bool isClean(const std::string& text) { return cleanText(text, maxDisplayNameBytes) == text; }

class World {
 public:
  explicit World(fuzz::Bytes& in)
      : in_(in),
        model_(
            [](const ClientFacts& facts) { return cleanText(defaultApplicationIdentifier(facts), maxIdentifierBytes); },
            Logger(log_, "Graph"), 77) {}

  void run() {
    for (int left = 128; left > 0 && !in_.isEmpty(); --left) {
      step();
      requireWhole();
      take();
    }
    requireReadable();
    // Nothing is left of what has gone.
    for (GlobalID id = 0; id < idCount; ++id) model_.remove(id);
    QUILLMERE_REQUIRE(model_.clients().empty() && model_.nodes().empty() && model_.metadata().empty());
    for (GlobalID id = 0; id < idCount; ++id) {
      QUILLMERE_REQUIRE(model_.portsOf(id).empty() && !model_.hasLink(id) && model_.port(id) == nullptr);
    }
    QUILLMERE_REQUIRE(model_.outputSerial(std::nullopt).empty());
    take();
    QUILLMERE_REQUIRE(last_.processes.empty());
    for (const auto& device : last_.devices) QUILLMERE_REQUIRE(!device.isThere);
  }

 private:
  /// Few, so that they meet.
  static constexpr GlobalID idCount = 12;

  void step() {
    const auto id = static_cast<GlobalID>(in_.below(idCount));
    switch (in_.below(14)) {
      case 0:
        model_.updateClient(id, anyProperties(in_));
        break;
      case 1:
      case 2:
      case 3:
        model_.updateNode(id, anyProperties(in_));
        break;
      case 4:
        model_.setNodeInfo(id, in_.flag());
        break;
      case 5:
        model_.setNodeVolumes(id, anyVolumes(in_));
        break;
      case 6:
        model_.updateDevice(id, anyProperties(in_));
        break;
      case 7: {
        std::vector<RouteRecord> routes;
        for (auto left = in_.below(3); left > 0; --left) {
          routes.push_back({in_.number<std::int8_t>(), in_.number<std::int8_t>(), in_.flag(), anyVolumes(in_)});
        }
        model_.setRoutes(id, std::move(routes));
        break;
      }
      case 8:
        model_.updatePort(id, anyProperties(in_));
        break;
      case 9:
        model_.updateLink(id, anyProperties(in_));
        break;
      case 10:
        model_.setMetadata(
            id, in_.flag() ? "default.audio.sink" : std::string(in_.oneOf(keys)),
            in_.flag() ? std::optional<std::string>(in_.flag() ? R"({"name":")" + anyValue(in_) + "\"}" : anyValue(in_))
                       : std::nullopt);
        break;
      case 11:
        model_.setOwnClient(id);
        break;
      case 12:
        model_.setSetting(in_.flag() ? "clock.force-rate" : "clock.rate", anyValue(in_));
        break;
      default:
        if (in_.byte() == 0xFF) {
          model_.clear();
        } else {
          model_.remove(id);
        }
        break;
    }
  }

  /// The ways to find something find what is there, and that alone.
  void requireWhole() const {
    QUILLMERE_REQUIRE(model_.graphRate() > 0.0);
    for (GlobalID id = 0; id < idCount; ++id) {
      const auto* node = model_.node(id);
      QUILLMERE_REQUIRE((node != nullptr) == model_.nodes().contains(id));
      for (const auto& link : model_.linksInto(id)) QUILLMERE_REQUIRE(link.inputNode == id);
      for (const auto& link : model_.linksFrom(id)) QUILLMERE_REQUIRE(link.outputNode == id);
      QUILLMERE_REQUIRE(model_.hasLinkInto(id) == !model_.linksInto(id).empty());
      QUILLMERE_REQUIRE(model_.linkedInput(id).has_value() == !model_.linksFrom(id).empty());
      for (const auto& port : model_.portsOf(id)) {
        QUILLMERE_REQUIRE(port.node == id && model_.port(port.id) != nullptr);
      }
      if (node == nullptr) continue;
      if (!node->serial.empty()) {
        const auto* found = model_.nodeBySerial(node->serial);
        QUILLMERE_REQUIRE(found == nullptr || found->serial == node->serial);
      }
      for (const auto other : model_.linkGroupOf(id)) {
        const auto back = model_.linkGroupOf(other);
        QUILLMERE_REQUIRE(other != id && std::ranges::find(back, id) != back.end());
      }
      if (model_.countsAsStream(*node)) QUILLMERE_REQUIRE(!node->isOurs && !node->isFilter);
    }
    if (const auto serial = model_.outputSerial(std::nullopt); !serial.empty()) {
      QUILLMERE_REQUIRE(std::ranges::any_of(model_.nodes(), [&](const auto& entry) {
        return entry.second.serial == serial && GraphModel::isOutput(entry.second);
      }));
    }
  }

  void take() {
    auto now = takeSnapshot(model_, {}, ids_);
    keepDevices(now, last_, [](const DeviceSnapshot&) { return false; });
    const auto name = model_.metadataValue(0, "default.audio.sink");
    setDefaultOutput(now, last_, name ? std::optional<std::string>("speakers") : std::nullopt);
    requireWhole(now);
    QUILLMERE_REQUIRE(differences(now, now).empty());
    for (const auto& change : differences(last_, now)) {
      QUILLMERE_REQUIRE(change.object == systemObjectID || now.device(change.object) != nullptr ||
                        now.process(change.object) != nullptr || last_.device(change.object) != nullptr);
    }
    last_ = std::move(now);
  }

  void requireWhole(const AudioSnapshot& now) {
    requireDistinct(now.devices, &DeviceSnapshot::id);
    requireDistinct(now.devices, &DeviceSnapshot::outputStream);
    requireDistinct(now.processes, &ProcessSnapshot::id);
    QUILLMERE_REQUIRE(now.defaultOutput == 0 || now.device(now.defaultOutput) != nullptr);
    std::set<std::string> identifiers;
    for (const auto& process : now.processes) {
      QUILLMERE_REQUIRE(identifiers.insert(process.identifier).second);
      requireSame(process.id, "process " + process.identifier);
      QUILLMERE_REQUIRE(process.pid >= 0);
    }
    for (const auto& device : now.devices) {
      QUILLMERE_REQUIRE(!device.uid.empty() && isClean(device.name));
      requireSame(device.id, "device " + device.uid);
      if (device.isThere) {
        const auto* node = model_.node(device.node);
        QUILLMERE_REQUIRE(node != nullptr && node->name == device.uid && !node->isOurs);
      }
      for (const float volume : device.volumes) QUILLMERE_REQUIRE(volume >= 0.0F && volume <= 1.0F);
    }
  }

  /// Every property of everything is there, or is told not to be.
  void requireReadable() const {
    for (const auto& process : last_.processes) {
      requireProperties([&](const auto& address) { return processProperty(process, address); });
    }
    for (const auto& device : last_.devices) {
      requireProperties([&](const auto& address) { return deviceProperty(device, address); });
    }
    requireProperties([&](const auto& address) { return systemProperty(last_, address); });
  }

  /// A number stands for one thing, as long as the program runs.
  void requireSame(AudioObjectID id, const std::string& meaning) {
    const auto [known, isNew] = meanings_.try_emplace(id, meaning);
    QUILLMERE_REQUIRE(isNew || known->second == meaning);
  }

  template <typename Read>
  static void requireProperties(const Read& read) {
    for (const auto selector : {audio::devices, audio::processObjectList, audio::defaultOutputDevice, audio::deviceUID,
                                audio::objectName, audio::transportType, audio::volumeScalar, audio::streams,
                                audio::processBundleID, audio::processPID, audio::deviceIsAlive}) {
      for (const auto scope : {audio::scopeGlobal, audio::scopeOutput}) {
        for (std::uint32_t element = 0; element < 4; ++element) {
          const auto value = read(PropertyAddress{selector, scope, element});
          QUILLMERE_REQUIRE((value.status == noErr) == (value.type != ValueType::none));
        }
      }
    }
  }

  fuzz::Bytes& in_;
  fuzz::Silence log_;
  GraphModel model_;
  ObjectIDs ids_;
  AudioSnapshot last_;
  std::map<AudioObjectID, std::string> meanings_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes in(data, size);
  World(in).run();
  return 0;
}
