// Asks once a period what the machine plays and makes a track of the answer.
// A source that is missing or tells nonsense gives no track; one that never answers stops the stream.
#pragma once

#include <optional>

#include "integrations/NowPlayingTrack.h"
#include "platform/NowPlayingSource.h"
#include "platform/Workspace.h"
#include "runtime/Runtime.h"
#include "runtime/Stream.h"

namespace quillmere {

class NowPlayingMonitor {
 public:
  /// `source` and `workspace` outlive the monitor and its streams.
  NowPlayingMonitor(NowPlayingSource& source, Workspace& workspace, const Runtime& runtime, Duration pollInterval);

  /// An element each period, changed or not; absent where nothing with a title plays. Asks on [background]. A consumer
  /// that wants changes only is told when the source may have another answer, and when other applications run than
  /// before, as far as somebody else looks for those. [any]
  [[nodiscard]] Stream<std::optional<NowPlayingTrack>> stream() const;

 private:
  NowPlayingSource& source_;
  Workspace& workspace_;
  Executor& background_;
  Duration pollInterval_;
};

}  // namespace quillmere
