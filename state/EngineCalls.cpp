// The engine's calls answered by the driver client and, behind it, the tap engine.
#include "state/EngineCalls.h"

#include <utility>

#include "engine/DriverClient.h"
#include "engine/ProcessTapEngine.h"

namespace quillmere {

namespace {

class DriverEngineCalls final : public EngineCalls {
 public:
  explicit DriverEngineCalls(DriverClient& driver) : driver_(driver) {}

  void applyGain(float gain, const std::string& bundleID) override { driver_.applyGain(gain, bundleID); }
  void applyRouting(const std::optional<std::string>& deviceUID, const std::string& bundleID) override {
    driver_.applyRouting(deviceUID, bundleID);
  }
  void updateProcessMap(std::vector<CoreAudioProcessMonitor::Snapshot> snapshots) override {
    driver_.engine().updateProcessMap(std::move(snapshots));
  }
  std::set<std::string> activeBundleIDs() override { return driver_.engine().activeBundleIDs(); }
  bool isHearing() override { return driver_.engine().isHearing(); }
  const ChangeSignal& changes() override { return driver_.engine().changes(); }
  void refreshUnroutedSubgraphsForNewSystemDefault() override {
    driver_.engine().refreshUnroutedSubgraphsForNewSystemDefault();
  }
  Stream<std::map<std::string, float>> levelsStream() override { return driver_.levelsStream(); }

 private:
  DriverClient& driver_;
};

}  // namespace

std::shared_ptr<EngineCalls> engineCallsThrough(DriverClient& driver) {
  return std::make_shared<DriverEngineCalls>(driver);
}

}  // namespace quillmere
