// Forwarding to the engine in this process.
#include "engine/DriverClient.h"

#include <atomic>

#include "engine/ProcessTapEngine.h"
#include "runtime/Poll.h"
#include "runtime/Threads.h"

namespace quillmere {

namespace {

std::atomic<DriverClient*> installed{nullptr};

}  // namespace

DriverClient::DriverClient(ProcessTapEngine& engine, Executor& background) : engine_(engine), background_(background) {}

DriverClient::~DriverClient() {
  DriverClient* self = this;
  installed.compare_exchange_strong(self, nullptr);
}

DriverClient& DriverClient::shared() {
  auto* const client = installed.load();
  if (client == nullptr) preconditionFailure("no driver client is installed");
  return *client;
}

void DriverClient::install() { installed.store(this); }

void DriverClient::applyGain(float gain, const std::string& bundleID) { engine_.applyGain(gain, bundleID); }

void DriverClient::applyMute(bool muted, const std::string& bundleID) {
  engine_.applyGain(muted ? 0.0F : 1.0F, bundleID);
}

void DriverClient::applyRouting(const std::optional<std::string>& deviceUID, const std::string& bundleID) {
  engine_.applyRouting(deviceUID, bundleID);
}

Stream<DriverClient::Levels> DriverClient::levelsStream() const {
  // The period stands, so that levels can be put into the elements without a change to those who read them.
  return Stream<Levels>::produce(background_, [](TaskContext& task, Stream<Levels>::Writer& writer) -> Async<void> {
    const ChangeWatch nothing;
    co_await poll<Levels>(task, writer, levelsPeriod, nothing, [] { return Levels(); });
  });
}

}  // namespace quillmere
