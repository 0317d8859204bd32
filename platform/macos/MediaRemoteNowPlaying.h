// What the machine plays, as the system's own framework for it tells. That framework is private: it is opened at run
// time, and where it is missing or has changed nothing plays.
#pragma once

#include "platform/NowPlayingSource.h"

namespace quillmere {

class MediaRemoteNowPlaying final : public NowPlayingSource {
 public:
  void nowPlayingInfo(InfoReply reply) override;
  void nowPlayingApplicationPID(PIDReply reply) override;
};

}  // namespace quillmere
