// Taps, aggregate devices and IO blocks, and the life of the nodes behind them: opened, live, released, returned.
// Knows no daemon: paths come from a factory, time comes as ticks. [loop]
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Destination.h"
#include "GraphModel.h"
#include "ObjectIDs.h"
#include "TapFeeder.h"
#include "TapFollower.h"
#include "TapPath.h"
#include "platform/AudioTypes.h"
#include "runtime/Clocks.h"
#include "runtime/Logger.h"

namespace quillmere::pipewire {

class TapDirector {
 public:
  /// Opens a path to the output of this serial, absent: to nowhere, since there is none. `changed` may be called until
  /// it is gone.
  using PathFactory =
      std::function<std::unique_ptr<TapPath>(const std::optional<std::string>& output, std::function<void()> changed)>;
  /// Asks for moment() at a time in nanoseconds of the monotonic clock; a later request replaces an earlier one.
  using WakeAt = std::function<void(std::uint64_t)>;

  /// tick() is to be called this often for as long as wantsTicks().
  static constexpr Duration tickInterval = std::chrono::milliseconds(10);

  TapDirector(const GraphModel& model, TapFeeder& feeder, OutputFinder& outputs, ObjectIDs& ids, PathFactory makePath,
              WakeAt wakeAt, Logger log);
  ~TapDirector();

  Status createTap(const TapDescription& description, AudioObjectID& tap);
  Status destroyTap(AudioObjectID tap);
  Status createDevice(const AggregateDescription& description, AudioObjectID& device);
  Status destroyDevice(AudioObjectID device);
  Status createProc(AudioObjectID device, IOBlock block, IOProcID& proc);
  Status destroyProc(AudioObjectID device, IOProcID proc);
  Status start(AudioObjectID device, IOProcID proc);
  Status stop(AudioObjectID device, IOProcID proc, float appliedGain);

  [[nodiscard]] bool hasTap(AudioObjectID tap) const { return taps_.contains(tap); }
  [[nodiscard]] bool hasDevice(AudioObjectID device) const { return devices_.contains(device); }
  /// The rate at which a tap's application is played, in Hz; the graph's where it isn't.
  [[nodiscard]] double rate(AudioObjectID tap) const;

  /// The session manager has come: everything that was built is built (again).
  void resume();
  /// The session manager has gone: no node of ours may stay.
  void suspend();
  /// Every stream goes back at once, without a glide, and nothing is rebuilt.
  void giveEverythingBack();

  /// The graph or a path has changed.
  void graphChanged();
  void tick();
  /// The time asked for has come.
  void moment();
  [[nodiscard]] bool wantsTicks() const;

 private:
  enum class Phase { opening, ready, live, releasing, returning };
  struct Session;
  struct Tap {
    std::set<std::string> applications;
    std::string uid;
  };
  /// What an application plays on one output: a device has one for its own destination, and one more for each other
  /// that streams are bound for.
  struct Lane {
    /// Its node is made later: too many were made for its applications of late.
    bool isPutOff = false;
    /// How often it was cut off from an output that stands.
    int cuts = 0;
    std::shared_ptr<Session> session;
    /// Still runs the block until the session that takes its place is ready.
    std::shared_ptr<Session> predecessor;
    /// Stands in for the IO block in all lanes but the device's own.
    std::unique_ptr<TapFollower> follower;
  };
  struct Device {
    AudioObjectID tap = 0;
    std::set<std::string> applications;
    /// Where the application is routed to; absent: its streams play where they ask to.
    Destination route;
    std::shared_ptr<const std::atomic<float>> targetGain;
    std::map<Destination, Lane> lanes;
    std::map<IOProcID, std::unique_ptr<IOBlock>> procs;
    IOProcID running = 0;
  };

  void attach(Device& device, const Destination& destination, Lane& lane);
  /// Takes up a session of the same applications and output that is still there.
  [[nodiscard]] bool adopt(const Device& device, const Destination& destination, Lane& lane);
  /// What its applications still play through stays at its gain until another tap has taken them over.
  void holdOthers(const Device& device);
  /// Nothing takes over what is held for these applications.
  void letGo(const std::set<std::string>& applications);
  /// Whether a node may be made for the device's applications now.
  [[nodiscard]] bool mayOpen(const Device& device) const;
  /// Counts the nodes that were made of late down; tells whether another one may be made somewhere.
  bool countOpeningsDown();
  [[nodiscard]] std::shared_ptr<Session> openSession(const Device& device, const Destination& destination);
  void followOutput(Device& device, const Destination& destination, Lane& lane);
  /// Of a session that nobody plays through: it goes once the session manager is done with it.
  void sendAway(std::shared_ptr<Session> session);
  /// Opens and closes lanes as streams are bound for other outputs.
  void followStreams(Device& device);
  void askForOutputs();
  /// How long a node that was cut off is left as it is, in ticks.
  [[nodiscard]] static int patience(const Lane& lane);
  void dismiss(Lane& lane, float appliedGain);
  void leave(Lane& lane, float appliedGain);
  void detach(Device& device, float appliedGain);
  [[nodiscard]] static const IOBlock* blockOf(const Device& device, const Lane& lane);
  void goLive(Device& device, Lane& lane);
  void progress(Device& device, const Destination& destination, Lane& lane);
  [[nodiscard]] bool mustWait(Session& session);
  [[nodiscard]] bool isHeard(const Session& session) const;
  [[nodiscard]] bool isTapped(const Session& session) const;
  void beginReturn(Session& session);
  void handOver(Session& session);
  void dropReturned();
  /// An application and where its streams are bound for.
  using Charge = std::pair<std::string, Destination>;
  [[nodiscard]] Session* sessionInCharge(const Charge& charge) const;

  const GraphModel& model_;
  TapFeeder& feeder_;
  OutputFinder& outputs_;
  ObjectIDs& ids_;
  PathFactory makePath_;
  WakeAt wakeAt_;
  Logger log_;
  bool isRunning_ = false;
  IOProcID nextProc_ = 1;
  std::map<AudioObjectID, Tap> taps_;
  std::map<AudioObjectID, Device> devices_;
  /// Sessions without a device: gliding to unity, or waiting for the streams to leave.
  std::vector<std::shared_ptr<Session>> leaving_;
  struct Openings {
    int count = 0;
    int ticks = 0;
  };
  /// Nodes that were made for each application of late.
  std::map<std::string, Openings> openings_;
  /// Whose streams those of each application are.
  std::map<Charge, Session*> inCharge_;
};

}  // namespace quillmere::pipewire
