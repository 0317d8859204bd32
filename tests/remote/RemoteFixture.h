// What the tests of both ends share: a mixer, and a state that follows it. Messages go from hand to hand, as bytes.
#pragma once

#include <deque>
#include <memory>
#include <string>

#include "StateFixture.h"
#include "remote/MixerHost.h"
#include "remote/RemoteState.h"

namespace quillmere {

class RemoteFixture : public StateFixture {
 public:
  ~RemoteFixture() override;

 protected:
  RemoteFixture();

  /// The other process comes.
  void connect();
  SendMessage toHost();
  void takeOne();
  void performOne();
  /// Until nothing is on its way.
  void deliver();
  static const AudioApp& app(const MixerState& in, const std::string& bundleID);

  bool isBehind = false;
  std::deque<std::string> toRemote;
  std::deque<std::string> toMixer;
  std::unique_ptr<MixerHost> host;
  std::unique_ptr<RemoteState> remote;
};

/// All fields must arrive: those that differ are named.
void expectSame(const MixerState& here, const MixerState& there);

}  // namespace quillmere
