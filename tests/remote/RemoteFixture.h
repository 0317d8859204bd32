// What the tests of both ends share: a mixer, and a state that follows it. Messages go from hand to hand, as bytes.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "StateFixture.h"
#include "remote/MixerHost.h"
#include "remote/RemoteState.h"

namespace quillmere {

class RemoteFixture : public StateFixture {
 protected:
  /// The other process comes.
  void connect() {
    host = std::make_unique<MixerHost>(
        state(), box->runtime, [this](const nlohmann::json& message) { toRemote.push_back(encodeMessage(message)); },
        [this] { return isBehind; });
    remote = std::make_unique<RemoteState>(box->log, toHost());
    deliver();
  }
  SendMessage toHost() {
    return [this](const nlohmann::json& message) { toMixer.push_back(encodeMessage(message)); };
  }
  void takeOne() {
    const auto message = decodeMessage(toRemote.front()).value();
    toRemote.pop_front();
    EXPECT_TRUE(remote->take(message)) << message;
  }
  void performOne() {
    EXPECT_TRUE(host->take(decodeMessage(toMixer.front()).value()));
    toMixer.pop_front();
  }
  /// Until nothing is on its way.
  void deliver() {
    while (!toRemote.empty() || !toMixer.empty()) {
      if (!toMixer.empty()) performOne();
      if (!toRemote.empty()) takeOne();
    }
  }
  static const AudioApp& app(const MixerState& in, const std::string& bundleID) {
    return *std::find_if(in.apps()->begin(), in.apps()->end(),
                         [&](const AudioApp& each) { return each.bundleID == bundleID; });
  }

  bool isBehind = false;
  std::deque<std::string> toRemote;
  std::deque<std::string> toMixer;
  std::unique_ptr<MixerHost> host;
  std::unique_ptr<RemoteState> remote;
};

/// All fields must arrive: those that differ are named.
inline void expectSame(const MixerState& here, const MixerState& there) {
#define FIELD(type, name, ...) EXPECT_EQ(*here.name(), *there.name()) << #name;
#include "state/MixerFields.def"
}

}  // namespace quillmere
