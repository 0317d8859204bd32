// What belongs to the main thread stops the process on another one, whoever calls it: each operation of the mixer, at
// either end of the border, and the messages between them.
#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "StateFixture.h"
#include "platform/memory/MemoryStatusItem.h"
#include "remote/MixerHost.h"
#include "remote/RemoteState.h"
#include "remote/RemoteStatusItem.h"
#include "state/SettingsStore.h"

namespace quillmere {
namespace {

using NamedCalls = std::vector<std::pair<std::string, std::function<void()>>>;

class ThreadChecksDeathTest : public StateFixture {
 protected:
  void SetUp() override {
#ifndef QUILLMERE_THREAD_CHECKS
    GTEST_SKIP() << "built without QUILLMERE_THREAD_CHECKS";
#endif
  }
  /// Each stops the process where `otherwise` runs it, and does not here.
  static void expectMainOnly(const NamedCalls& calls,
                             const std::function<void(const std::function<void()>&)>& otherwise) {
    for (const auto& [name, call] : calls) {
      EXPECT_DEATH(otherwise(call), "off the main thread") << name;
      call();
    }
  }
  void onTheBackground(const std::function<void()>& work) const {
    box->time.background().post(work);
    box->time.runUntilIdle();
  }
  static void onAnotherThread(const std::function<void()>& work) { std::thread(work).join(); }

  static NamedCalls operationsOf(MixerState& state) {
    NamedCalls calls;
    MixerState::visitOperations(
        [&]<typename... Parameters>(const char* name, void (MixerState::*operation)(Parameters...)) {
          calls.emplace_back(name, [&state, operation] { (state.*operation)(std::remove_cvref_t<Parameters>{}...); });
        });
    return calls;
  }

  SendMessage send = [](const nlohmann::json&) {};
};

TEST_F(ThreadChecksDeathTest, EveryOperationOfTheMixer) {
  startWithThree();
  expectMainOnly(operationsOf(state()), [this](const auto& work) { onTheBackground(work); });
}

TEST_F(ThreadChecksDeathTest, EveryOperationOfTheMixerInAnotherProcess) {
  RemoteState remote(box->log, send);
  auto calls = operationsOf(remote);
  calls.emplace_back("take", [&] { remote.take({{"type", "performed"}}); });
  expectMainOnly(calls, onAnotherThread);
}

TEST_F(ThreadChecksDeathTest, TheMixersEndOfTheBorder) {
  startWithThree();
  MixerHost host(state(), box->runtime, send, [] { return false; });
  expectMainOnly(
      {{"the host", [&] { MixerHost another(state(), box->runtime, send, [] { return false; }); }},
       {"take", [&] { host.take({{"type", "nothing"}}); }}},
      [this](const auto& work) { onTheBackground(work); });
}

TEST_F(ThreadChecksDeathTest, TheIconAtBothEnds) {
  RemoteStatusItem item(box->log, send);
  MemoryStatusItem drawn;
  StatusItemHost host(drawn, box->log, send);
  expectMainOnly({{"connected", [&] { item.connected(); }},
                  {"show", [&] { item.show(); }},
                  {"setMenu", [&] { item.setMenu({}); }},
                  {"setToolTip", [&] { item.setToolTip("quillmere"); }},
                  {"take", [&] { item.take({{"type", "nothing"}}); }},
                  {"disconnected", [&] { item.disconnected(); }},
                  {"the host's take", [&] { host.take({{"type", "nothing"}}); }}},
                 onAnotherThread);
}

TEST_F(ThreadChecksDeathTest, TheStore) {
  SettingsStore store(disk, box->time, box->log);
  expectMainOnly({{"load", [&] { static_cast<void>(store.load()); }},
                  {"persistOutputDevice", [&] { store.persistOutputDevice("headset"); }},
                  {"persistActiveProfile", [&] { store.persistActiveProfile(std::nullopt); }},
                  {"persistDuckRule", [&] { store.persistDuckRule(SettingsStore::defaultDuckRule()); }},
                  {"persistProfiles", [&] { store.persistProfiles({}); }},
                  {"persistAppsState", [&] { store.persistAppsState({}); }},
                  {"persistFocusCandidates", [&] { store.persistFocusCandidates({}); }}},
                 onAnotherThread);
}

}  // namespace
}  // namespace quillmere
