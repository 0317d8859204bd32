// The audio path of one application: a tap over its processes, a private aggregate around the tap and one output
// device, and the IO block between them.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/Uuid.h"
#include "platform/AudioHardware.h"
#include "runtime/Clocks.h"
#include "runtime/Logger.h"

namespace quillmere {

struct IOWords;

/// Activated at most once; a changed device or process list means a new subgraph. [engine] unless stated.
class ProcessTapSubgraph {
 public:
  /// How far the building of the path is.
  enum class Progress {
    /// The aggregate is made and not alive yet: proceed() goes on.
    waiting,
    live,
    /// Everything made so far is gone again and a line is logged.
    failed,
  };

  /// An aggregate is given up when it is not alive after this time, and no other has come alive in it.
  static constexpr Duration aliveTimeout = std::chrono::seconds(2);
  /// proceed() is to be called this often while the path waits.
  static constexpr Duration alivePoll = std::chrono::milliseconds(10);

  /// Touches no audio object. The hardware and the clocks outlive this.
  ProcessTapSubgraph(AudioHardware& hardware, Clocks& clocks, std::string bundleID,
                     std::vector<AudioObjectID> processObjectIDs, Logger log);
  /// Tears down what is live, and what is half built.
  ~ProcessTapSubgraph();
  ProcessTapSubgraph(const ProcessTapSubgraph&) = delete;
  ProcessTapSubgraph& operator=(const ProcessTapSubgraph&) = delete;

  /// Builds the path up to where the aggregate has to come alive, and the rest where it is already. Never blocks. An
  /// absent or empty UID takes the system default of the moment.
  Progress activate(float initialGain, const std::optional<std::string>& routedOutputUID);
  /// Looks whether the aggregate has come alive, and builds the rest if so: then audio flows. Called while waiting
  /// only.
  Progress proceed();
  /// The time in which it must come alive begins anew: the host is busy with others, and gets on with them.
  void waitAnew();
  /// Tears a live path down; otherwise does nothing.
  void invalidate();

  /// The linear gain to glide to, limited to at most 1. Heard from the next IO cycle on.
  void setTargetGain(float gain);
  [[nodiscard]] float targetGain() const;
  /// Decaying linear peak of what was tapped, before the gain. [any]
  [[nodiscard]] float recentInputPeak() const;
  /// What the IO block works on, for looking at from any thread. Stays readable after the subgraph has gone.
  [[nodiscard]] std::shared_ptr<const IOWords> words() const;
  [[nodiscard]] bool isActive() const { return active_; }

 private:
  struct IOState;

  [[nodiscard]] bool createTap();
  [[nodiscard]] bool readTapFormat();
  [[nodiscard]] bool createAggregate(const std::string& outputUID, bool followsDefaultOutput);
  [[nodiscard]] bool installIOProc();
  [[nodiscard]] bool startIO();
  /// The glide keeps its time when the tap's rate changes while it runs.
  void followTapFormat();
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
  PropertyListener formatListener_;
  std::string outputUID_;
  AudioObjectID aggregateID_ = 0;
  MonotonicTime aliveDeadline_{};
  std::optional<IOProcID> ioProcID_;
  bool active_ = false;
  /// Shared with the IO block; see the source for who lets go of it last.
  std::shared_ptr<IOState> io_;
};

}  // namespace quillmere
