// How messages go between both ends, and what both must know then. Compiled once for all tests that stand on them:
// comparing every field, and telling what differs, took each of them seconds.
#include "RemoteFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

namespace quillmere {

RemoteFixture::RemoteFixture() = default;
RemoteFixture::~RemoteFixture() = default;

void RemoteFixture::connect() {
  host = std::make_unique<MixerHost>(
      state(), box->runtime, [this](const nlohmann::json& message) { toRemote.push_back(encodeMessage(message)); },
      [this] { return isBehind; });
  remote = std::make_unique<RemoteState>(box->log, toHost());
  deliver();
}

SendMessage RemoteFixture::toHost() {
  return [this](const nlohmann::json& message) { toMixer.push_back(encodeMessage(message)); };
}

void RemoteFixture::takeOne() {
  const auto message = decodeMessage(toRemote.front()).value();
  toRemote.pop_front();
  EXPECT_TRUE(remote->take(message)) << message;
}

void RemoteFixture::performOne() {
  EXPECT_TRUE(host->take(decodeMessage(toMixer.front()).value()));
  toMixer.pop_front();
}

void RemoteFixture::deliver() {
  while (!toRemote.empty() || !toMixer.empty()) {
    if (!toMixer.empty()) performOne();
    if (!toRemote.empty()) takeOne();
  }
}

const AudioApp& RemoteFixture::app(const MixerState& in, const std::string& bundleID) {
  return *std::find_if(in.apps()->begin(), in.apps()->end(),
                       [&](const AudioApp& each) { return each.bundleID == bundleID; });
}

void expectSame(const MixerState& here, const MixerState& there) {
#define FIELD(type, name, ...) EXPECT_EQ(*here.name(), *there.name()) << #name;
#include "state/MixerFields.def"
}

}  // namespace quillmere
