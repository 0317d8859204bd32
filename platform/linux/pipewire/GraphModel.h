// What the daemon has told of its graph: clients, nodes, devices, links, metadata. Plain data fed by events.
// [loop] throughout.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Properties.h"
#include "platform/linux/ClientFacts.h"
#include "runtime/Logger.h"

namespace quillmere::pipewire {

using GlobalID = std::uint32_t;

/// `jack`: a client of JACK's interface, which links its ports by itself.
enum class NodeKind { other, sink, duplex, source, playback, recording, jack };

struct ClientRecord {
  Properties properties;
  /// Order of appearance.
  std::uint64_t order = 0;
  /// Has, or has had, a stream that counts.
  bool hasStreamed = false;
  /// Has, or has had, one that plays.
  bool hasPlayed = false;
  /// The same two of streams that are gone.
  bool hadStream = false;
  bool hadPlayback = false;
  /// Empty until `hasStreamed`.
  std::string identifier;
  ClientFacts facts;
};

struct NodeRecord {
  Properties properties;
  std::uint64_t order = 0;
  NodeKind kind = NodeKind::other;
  std::string serial;
  std::string name;
  std::optional<GlobalID> client;
  std::optional<GlobalID> device;
  bool isOurs = false;
  /// Sound that goes in elsewhere comes out here, or the other way round: see docs/pipewire.md. Once so, always so.
  bool isFilter = false;
  bool isRunning = false;
  bool hasRun = false;
  /// The node's own properties have come (and not the registry's short list only).
  bool hasInfo = false;
  /// Linear, one a channel; empty where the node has no volume.
  std::vector<float> volumes;
};

struct RouteRecord {
  std::int32_t index = 0;
  std::int32_t device = 0;
  bool isOutput = false;
  std::vector<float> volumes;
};

struct DeviceRecord {
  Properties properties;
  std::vector<RouteRecord> routes;
};

struct LinkRecord {
  GlobalID outputNode = 0;
  GlobalID outputPort = 0;
  GlobalID inputNode = 0;
  GlobalID inputPort = 0;
};

struct PortRecord {
  GlobalID id = 0;
  /// Never given twice, as ids are.
  std::string serial;
  GlobalID node = 0;
  /// Its number among the node's ports of its direction.
  std::uint32_t index = 0;
  bool isInput = false;
  bool isMonitor = false;
  bool isControl = false;
  /// "FL", "FR", "MONO" and so on; empty where it has no position.
  std::string channel;
};

/// Node names of ours begin with this.
inline constexpr std::string_view ourNodePrefix = "app.quillmere.";

class GraphModel {
 public:
  GraphModel(ApplicationIdentifier identify, Logger log, std::int32_t ownPID);

  // Events. Properties are merged into those known.
  void setOwnClient(GlobalID client);
  void updateClient(GlobalID id, const Properties& properties);
  void updateNode(GlobalID id, const Properties& properties);
  void setNodeInfo(GlobalID id, bool isRunning);
  void setNodeVolumes(GlobalID id, std::vector<float> volumes);
  void updateDevice(GlobalID id, const Properties& properties);
  void setRoutes(GlobalID id, std::vector<RouteRecord> routes);
  void updatePort(GlobalID id, const Properties& properties);
  void updateLink(GlobalID id, const Properties& properties);
  /// A default output that can't be read leaves the one before.
  void setMetadata(GlobalID subject, const std::string& key, std::optional<std::string> value);
  void clearMetadata();
  void setSetting(const std::string& key, const std::string& value);
  void remove(GlobalID id);
  void clear();

  [[nodiscard]] const std::map<GlobalID, ClientRecord>& clients() const { return clients_; }
  [[nodiscard]] const std::map<GlobalID, NodeRecord>& nodes() const { return nodes_; }
  [[nodiscard]] const std::map<std::pair<GlobalID, std::string>, std::string>& metadata() const { return metadata_; }

  [[nodiscard]] const NodeRecord* node(GlobalID id) const;
  [[nodiscard]] const NodeRecord* nodeBySerial(std::string_view serial) const;
  [[nodiscard]] std::optional<GlobalID> nodeIDBySerial(std::string_view serial) const;
  [[nodiscard]] const DeviceRecord* deviceOf(const NodeRecord& node) const;
  /// The active output route through which this node's volume goes.
  [[nodiscard]] const RouteRecord* routeOf(const NodeRecord& node) const;
  /// The route's volumes where there is one, the node's otherwise.
  [[nodiscard]] const std::vector<float>& volumesOf(const NodeRecord& node) const;
  [[nodiscard]] std::optional<std::string> metadataValue(GlobalID subject, const std::string& key) const;

  /// A stream of an application: no level meter, no side of a filter and not ours.
  [[nodiscard]] bool countsAsStream(const NodeRecord& node) const;
  /// A device that applications can play on.
  [[nodiscard]] static bool isOutput(const NodeRecord& node);
  /// A JACK client with at least one port that is linked to an output.
  [[nodiscard]] bool playsOnAnOutput(GlobalID id) const;
  /// The nodes that share a link group with it.
  [[nodiscard]] std::vector<GlobalID> linkGroupOf(GlobalID id) const;
  /// Of the application the stream belongs to; empty where that is not known.
  [[nodiscard]] const std::string& identifierOf(const NodeRecord& node) const;
  [[nodiscard]] std::vector<LinkRecord> linksInto(GlobalID inputNode) const;
  [[nodiscard]] std::vector<LinkRecord> linksFrom(GlobalID outputNode) const;
  [[nodiscard]] bool isMonitorPort(GlobalID port) const;
  [[nodiscard]] const PortRecord* port(GlobalID id) const;
  [[nodiscard]] bool hasLink(GlobalID id) const { return links_.contains(id); }
  [[nodiscard]] bool hasLinkInto(GlobalID inputNode) const;
  [[nodiscard]] bool hasLinkFrom(GlobalID outputNode) const;
  [[nodiscard]] bool areLinked(GlobalID outputNode, GlobalID inputNode) const;
  /// The node that this one plays into; of several, any.
  [[nodiscard]] std::optional<GlobalID> linkedInput(GlobalID outputNode) const;
  [[nodiscard]] std::vector<PortRecord> portsOf(GlobalID node) const;
  /// Serial of the output of this node.name, absent: of the default output; empty where there is none.
  [[nodiscard]] std::string outputSerial(const std::optional<std::string>& name) const;
  /// The rate the graph runs at, in Hz; 48000 where the daemon doesn't say.
  [[nodiscard]] double graphRate() const;

 private:
  [[nodiscard]] std::vector<LinkRecord> linksAt(const std::map<GlobalID, std::set<GlobalID>>& index,
                                                GlobalID node) const;
  void identify(GlobalID clientID, ClientRecord& client, const Properties& stream);
  [[nodiscard]] bool isOurs(const NodeRecord& node) const;
  void noteDefaultOutput();
  void dropNode(GlobalID id);
  void dropPort(GlobalID id);
  [[nodiscard]] std::map<GlobalID, ClientRecord>::iterator clientOf(const NodeRecord& node);
  void noteStream(const NodeRecord& node);
  void noteUse(const NodeRecord& node, bool isPlayback);
  void noteLinks(GlobalID id);
  void noteFilter(GlobalID id);
  void dropLink(GlobalID id);

  ApplicationIdentifier identify_;
  Logger log_;
  std::int32_t ownPID_;
  std::optional<GlobalID> ownClient_;
  std::uint64_t nextOrder_ = 0;
  std::map<GlobalID, ClientRecord> clients_;
  std::map<GlobalID, NodeRecord> nodes_;
  std::map<GlobalID, DeviceRecord> devices_;
  std::map<GlobalID, LinkRecord> links_;
  /// Links by the node that they lead into, and by the one that they come from.
  std::map<GlobalID, std::set<GlobalID>> linksInto_;
  std::map<GlobalID, std::set<GlobalID>> linksFrom_;
  std::map<GlobalID, PortRecord> ports_;
  // What is asked for each tap at every event is found at once: where there are many of both, nothing else gets done.
  std::map<std::string, GlobalID, std::less<>> nodesBySerial_;
  std::set<GlobalID> outputs_;
  std::map<GlobalID, std::set<GlobalID>> portsByNode_;
  /// As the metadata has it now.
  std::optional<std::string> defaultOutput_;
  std::map<std::pair<GlobalID, std::string>, std::string> metadata_;
  Properties settings_;
};

}  // namespace quillmere::pipewire
