// The audio path of one application: a tap over its processes, a private aggregate around the tap and one output
// device, and the IO block between them.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/Uuid.h"
#include "platform/AudioHardware.h"
#include "runtime/Clocks.h"
#include "runtime/Logger.h"

namespace quillmere {

/// Activated at most once; a changed device or process list means a new subgraph. [engine] unless stated.
class ProcessTapSubgraph {
 public:
  /// Touches no audio object. The hardware and the clocks outlive this.
  ProcessTapSubgraph(AudioHardware& hardware, Clocks& clocks, std::string bundleID,
                     std::vector<AudioObjectID> processObjectIDs, Logger log);
  ~ProcessTapSubgraph();
  ProcessTapSubgraph(const ProcessTapSubgraph&) = delete;
  ProcessTapSubgraph& operator=(const ProcessTapSubgraph&) = delete;

  /// Builds the whole path; true when audio flows. On failure everything made so far is gone again and a line is
  /// logged. Blocks for up to two seconds. An absent or empty UID takes the system default of the moment.
  bool activate(float initialGain, const std::optional<std::string>& routedOutputUID);
  /// Tears a live path down; otherwise does nothing.
  void invalidate();

  /// The linear gain to glide to, limited to at most 1. Heard from the next IO cycle on.
  void setTargetGain(float gain);
  [[nodiscard]] float targetGain() const;
  /// Decaying linear peak of what was tapped, before the gain. [any]
  [[nodiscard]] float recentInputPeak() const;
  [[nodiscard]] bool isActive() const { return active_; }

 private:
  struct IOState;

  [[nodiscard]] bool createTap();
  [[nodiscard]] bool readTapFormat();
  [[nodiscard]] bool createAggregate(const std::string& outputUID, bool followsDefaultOutput);
  [[nodiscard]] bool waitForAggregate();
  [[nodiscard]] bool installIOProc();
  [[nodiscard]] bool startIO();
  void destroyTap();
  void tearDownAll();

  AudioHardware& hardware_;
  Clocks& clocks_;
  const std::string bundleID_;
  const std::vector<AudioObjectID> processObjectIDs_;
  const Logger log_;
  AudioObjectID tapID_ = 0;
  const Uuid tapUUID_;
  AudioStreamBasicDescription tapASBD_;
  AudioObjectID aggregateID_ = 0;
  std::optional<IOProcID> ioProcID_;
  bool active_ = false;
  /// Shared with the IO block; see the source for who lets go of it last.
  std::shared_ptr<IOState> io_;
};

}  // namespace quillmere
