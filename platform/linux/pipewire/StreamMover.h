// Moves applications' streams to a tap and back through the session manager's metadata, and respects other movers.
// Pure decisions: the graph comes in as a model, what is to be written goes out through MetadataWriter.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "GraphModel.h"
#include "MetadataWriter.h"
#include "runtime/Logger.h"

namespace quillmere::pipewire {

class StreamMover {
 public:
  StreamMover(const GraphModel& model, MetadataWriter& metadata, Logger log);

  /// From now on the application's playback streams, present and future, belong on the node of this serial.
  void claim(const std::string& application, const std::string& serial);
  /// Its streams go back to where they were.
  void release(const std::string& application);
  /// Drops everything without a write: the session manager is gone and its metadata with it.
  void forget();

  /// Brings every stream where it belongs. To be called after any change of the graph.
  void settle();
  /// A target in the metadata has changed; absent: it was deleted.
  void onTargetChanged(GlobalID stream, const std::optional<std::string>& target);

  /// Whether a stream of the application that would be moved is playing now.
  [[nodiscard]] bool hasRunningStream(const std::string& application) const;

 private:
  /// The daemon gives ids again, to a stream that starts as another ends too; a serial it gives once.
  struct Moved {
    /// The stream's own serial.
    std::string stream;
    std::string application;
    /// Of the tap that it was sent to.
    std::string serial;
    std::optional<std::string> originalObject;
    std::optional<std::string> originalNode;
    /// Another program has moved it since: the user's wish for this stream.
    bool isLeftAlone = false;
    /// Was seen linked to that tap.
    bool hasArrived = false;
  };
  struct Echoes {
    /// The stream's own serial.
    std::string stream;
    std::deque<std::optional<std::string>> targets;
  };
  /// A client of the PulseAudio server gets its answer only once its stream is linked to an output; sent to a tap
  /// before, it waits for ever. The server writes its buffer sizes just before it answers, and nothing has sounded by
  /// then.
  [[nodiscard]] static bool isComplete(const NodeRecord& node);
  [[nodiscard]] bool isMovable(const NodeRecord& node) const;
  /// Drops what was said of streams that are gone, whoever has their ids now.
  void forgetGone();
  [[nodiscard]] std::optional<std::string> currentTarget(GlobalID stream) const;
  void writeTarget(GlobalID stream, const std::optional<std::string>& target);
  void send(GlobalID stream, Moved& moved, const std::string& serial);
  /// Plays somewhere else while the tap stands that it had been sent to: another program has moved it, and its word was
  /// missed.
  [[nodiscard]] bool hasLeft(GlobalID stream, const Moved& moved) const;
  void restore(GlobalID stream, const Moved& moved);

  const GraphModel& model_;
  MetadataWriter& metadata_;
  Logger log_;
  std::map<std::string, std::string> claims_;
  std::map<GlobalID, Moved> moved_;
  /// Targets written by us whose echo has not come back yet.
  std::map<GlobalID, Echoes> echoes_;
  /// Serials of all our taps so far.
  std::set<std::string> ownSerials_;
  /// Serials of streams.
  std::set<std::string> toldUnmovable_;
};

}  // namespace quillmere::pipewire
