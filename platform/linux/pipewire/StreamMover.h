// Moves applications' streams to their taps and back through the session manager's metadata, and follows other movers.
// Pure decisions: the graph comes in as a model, what is to be written goes out through MetadataWriter.
// [loop]
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "Destination.h"
#include "GraphModel.h"
#include "MetadataWriter.h"
#include "TapFeeder.h"
#include "runtime/Logger.h"

namespace quillmere::pipewire {

class StreamMover final : public TapFeeder {
 public:
  StreamMover(const GraphModel& model, MetadataWriter& metadata, Logger log);

  void claim(const std::string& application, const Destination& route, const Destination& destination,
             const std::string& serial) override;
  void release(const std::string& application, const Destination& destination) override;
  void forgetWishes(const std::string& application) override;
  void forget() override;
  void settle() override;
  [[nodiscard]] std::set<Destination> destinations(const std::string& application,
                                                   const Destination& route) const override;
  [[nodiscard]] bool hasRunningStream(const std::string& application, const Destination& route,
                                      const Destination& destination) const override;
  [[nodiscard]] bool hasTappedStream(const std::string& application, const Destination& route,
                                     const Destination& destination) const override;

  /// A `target.object` in the metadata has changed; absent: it was deleted.
  void onTargetChanged(GlobalID stream, const std::optional<std::string>& target);
  /// A `target.node` has: 0.4 restores what it has stored for a new stream by this key alone.
  void onNodeTargetChanged(GlobalID stream, const std::optional<std::string>& target);

 private:
  struct Claim {
    Destination route;
    /// Serials of the nodes by what they play for.
    std::map<Destination, std::string> taps;
  };
  /// The daemon gives ids again, to a stream that starts as another ends too; a serial it gives once.
  struct Moved {
    /// The stream's own serial.
    std::string stream;
    std::string application;
    /// Of the tap that it was sent to.
    std::string serial;
    std::optional<std::string> originalObject;
    std::optional<std::string> originalNode;
    /// Where it asks to be, by itself or through another mixer.
    Destination asked;
    /// Another mixer has moved it since: the user's wish for this stream, before any route.
    bool isWish = false;
    /// How often the same wish was repeated.
    int repeats = 0;
    /// Another program moves it back whenever we move it.
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
  [[nodiscard]] static bool isMovable(const NodeRecord& node);
  /// A stream that is, or is to be, moved for this application.
  [[nodiscard]] bool belongs(const NodeRecord& node, const std::string& application) const;
  /// Drops what was said of streams that are gone, whoever has their ids now.
  void forgetGone();
  /// Serial of the node of this id.
  [[nodiscard]] Destination serialOf(std::string_view id) const;
  [[nodiscard]] Destination askedBy(GlobalID stream, const NodeRecord& node) const;
  [[nodiscard]] Destination bound(GlobalID stream, const NodeRecord& node, const Destination& route) const;
  /// Drops the difference between a device's serial and its name where the route names the device too.
  [[nodiscard]] Destination alike(const Destination& asked, const Destination& route) const;
  [[nodiscard]] std::optional<std::string> currentTarget(GlobalID stream) const;
  void writeTarget(GlobalID stream, const std::optional<std::string>& target);
  void send(GlobalID stream, Moved& moved, const std::string& serial);
  /// Back to the tap that stands, until the one for its wish does: never at its full level on the way.
  void bringBack(GlobalID stream, Moved& moved);
  /// Plays somewhere else while the tap stands that it had been sent to: another program has moved it, and its word was
  /// missed.
  [[nodiscard]] bool hasLeft(GlobalID stream, const Moved& moved) const;
  void restore(GlobalID stream, const Moved& moved);

  const GraphModel& model_;
  MetadataWriter& metadata_;
  Logger log_;
  std::map<std::string, Claim> claims_;
  std::map<GlobalID, Moved> moved_;
  /// Targets written by us whose echo has not come back yet.
  std::map<GlobalID, Echoes> echoes_;
  /// Serials of all our taps so far.
  std::set<std::string> ownSerials_;
  /// Serials of streams.
  std::set<std::string> toldUnmovable_;
};

}  // namespace quillmere::pipewire
