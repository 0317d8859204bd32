#include "GraphModel.h"

#include <algorithm>
#include <utility>

#include "ClientIdentity.h"
#include "LinkGroup.h"
#include "MetadataValue.h"

namespace quillmere::pipewire {
namespace {

NodeKind kindOf(const Properties& node) {
  const auto mediaClass = text(node, "media.class");
  if (mediaClass == "Audio/Sink") return NodeKind::sink;
  if (mediaClass == "Audio/Duplex") return NodeKind::duplex;
  if (mediaClass == "Audio/Source" || mediaClass == "Audio/Source/Virtual") return NodeKind::source;
  if (mediaClass == "Stream/Output/Audio") return NodeKind::playback;
  if (mediaClass == "Stream/Input/Audio") return NodeKind::recording;
  if (mediaClass.empty() && text(node, "client.api") == "jack") return NodeKind::jack;
  return NodeKind::other;
}

void merge(Properties& known, const Properties& fresh) {
  for (const auto& [key, value] : fresh) known[key] = value;
}

}  // namespace

GraphModel::GraphModel(ApplicationIdentifier identify, Logger log, std::int32_t ownPID)
    : identify_(std::move(identify)), log_(std::move(log)), ownPID_(ownPID) {}

void GraphModel::setOwnClient(GlobalID client) {
  ownClient_ = client;
  for (auto& [id, node] : nodes_) node.isOurs = isOurs(node);
}

void GraphModel::updateClient(GlobalID id, const Properties& properties) {
  auto [found, isNew] = clients_.try_emplace(id);
  auto& client = found->second;
  if (isNew) client.order = nextOrder_++;
  merge(client.properties, properties);
  for (auto& [nodeID, node] : nodes_) {
    if (node.client != id) continue;
    node.isOurs = isOurs(node);
    noteStream(node);
    noteLinks(nodeID);
  }
  // A name may come after the first stream.
  if (client.hasStreamed) identify(id, client, {});
}

void GraphModel::updateNode(GlobalID id, const Properties& properties) {
  auto [found, isNew] = nodes_.try_emplace(id);
  auto& node = found->second;
  if (isNew) node.order = nextOrder_++;
  merge(node.properties, properties);
  node.kind = kindOf(node.properties);
  if (const auto known = nodesBySerial_.find(node.serial); known != nodesBySerial_.end() && known->second == id) {
    nodesBySerial_.erase(known);
  }
  node.serial = text(node.properties, "object.serial");
  if (!node.serial.empty()) nodesBySerial_[node.serial] = id;
  if (node.kind == NodeKind::sink || node.kind == NodeKind::duplex) {
    outputs_.insert(id);
  } else {
    outputs_.erase(id);
  }
  node.name = text(node.properties, "node.name");
  node.client = number(node.properties, "client.id");
  node.device = number(node.properties, "device.id");
  node.isOurs = isOurs(node);
  noteFilter(id);
  noteStream(node);
  noteLinks(id);
}

void GraphModel::setNodeInfo(GlobalID id, bool isRunning) {
  const auto found = nodes_.find(id);
  if (found == nodes_.end()) return;
  found->second.isRunning = isRunning;
  if (isRunning) found->second.hasRun = true;
  found->second.hasInfo = true;
  noteStream(found->second);
  noteLinks(id);
}

void GraphModel::setNodeVolumes(GlobalID id, std::vector<float> volumes) {
  const auto found = nodes_.find(id);
  if (found != nodes_.end()) found->second.volumes = std::move(volumes);
}

void GraphModel::updateDevice(GlobalID id, const Properties& properties) { merge(devices_[id].properties, properties); }

void GraphModel::setRoutes(GlobalID id, std::vector<RouteRecord> routes) { devices_[id].routes = std::move(routes); }

void GraphModel::updatePort(GlobalID id, const Properties& properties) {
  dropPort(id);
  auto& port = ports_[id];
  port.id = id;
  port.serial = text(properties, "object.serial");
  port.node = number(properties, "node.id").value_or(0);
  port.index = number(properties, "port.id").value_or(0);
  port.isInput = text(properties, "port.direction") == "in";
  port.isMonitor = flag(properties, "port.monitor");
  port.isControl = flag(properties, "port.control");
  port.channel = text(properties, "audio.channel");
  portsByNode_[port.node].insert(id);
}

void GraphModel::dropPort(GlobalID id) {
  const auto port = ports_.find(id);
  if (port == ports_.end()) return;
  const auto siblings = portsByNode_.find(port->second.node);
  siblings->second.erase(id);
  if (siblings->second.empty()) portsByNode_.erase(siblings);
  ports_.erase(port);
}

void GraphModel::dropNode(GlobalID id) {
  const auto node = nodes_.find(id);
  if (node == nodes_.end()) return;
  if (const auto known = nodesBySerial_.find(node->second.serial);
      known != nodesBySerial_.end() && known->second == id) {
    nodesBySerial_.erase(known);
  }
  outputs_.erase(id);
  nodes_.erase(node);
}

void GraphModel::updateLink(GlobalID id, const Properties& properties) {
  const auto known = links_.find(id);
  auto link = known == links_.end() ? LinkRecord{} : known->second;
  link.outputNode = number(properties, "link.output.node").value_or(link.outputNode);
  link.outputPort = number(properties, "link.output.port").value_or(link.outputPort);
  link.inputNode = number(properties, "link.input.node").value_or(link.inputNode);
  link.inputPort = number(properties, "link.input.port").value_or(link.inputPort);
  dropLink(id);
  links_[id] = link;
  linksInto_[link.inputNode].insert(id);
  linksFrom_[link.outputNode].insert(id);
  noteLinks(link.outputNode);
  noteLinks(link.inputNode);
}

void GraphModel::dropLink(GlobalID id) {
  const auto link = links_.find(id);
  if (link == links_.end()) return;
  const auto dropFrom = [id](auto& index, GlobalID node) {
    const auto entry = index.find(node);
    entry->second.erase(id);
    if (entry->second.empty()) index.erase(entry);
  };
  dropFrom(linksInto_, link->second.inputNode);
  dropFrom(linksFrom_, link->second.outputNode);
  links_.erase(link);
}

void GraphModel::setMetadata(GlobalID subject, const std::string& key, std::optional<std::string> value) {
  if (value) {
    // The last word on the default that could be read stays in force.
    if (subject == 0 && key == "default.audio.sink" && !nameFromMetadata(*value)) return;
    metadata_[{subject, key}] = std::move(*value);
  } else if (key.empty()) {
    std::erase_if(metadata_, [&](const auto& entry) { return entry.first.first == subject; });
  } else {
    metadata_.erase({subject, key});
  }
  if (subject == 0) noteDefaultOutput();
}

void GraphModel::clearMetadata() {
  metadata_.clear();
  noteDefaultOutput();
}

void GraphModel::noteDefaultOutput() {
  const auto told = metadataValue(0, "default.audio.sink");
  defaultOutput_ = told ? nameFromMetadata(*told) : std::nullopt;
}

void GraphModel::setSetting(const std::string& key, const std::string& value) { settings_[key] = value; }

void GraphModel::remove(GlobalID id) {
  clients_.erase(id);
  if (const auto* node = this->node(id)) {
    if (const auto client = clientOf(*node); client != clients_.end() && countsAsStream(*node)) {
      client->second.hadStream = true;
      if (node->kind == NodeKind::playback) client->second.hadPlayback = true;
    }
  }
  dropNode(id);
  devices_.erase(id);
  dropLink(id);
  dropPort(id);
  // Ids are given again; what was said of this object must not stick to the next.
  std::erase_if(metadata_, [&](const auto& entry) { return entry.first.first == id; });
  if (id == 0) noteDefaultOutput();
}

void GraphModel::clear() {
  ownClient_.reset();
  clients_.clear();
  nodes_.clear();
  devices_.clear();
  links_.clear();
  linksInto_.clear();
  linksFrom_.clear();
  ports_.clear();
  nodesBySerial_.clear();
  outputs_.clear();
  portsByNode_.clear();
  clearMetadata();
  settings_.clear();
}

const NodeRecord* GraphModel::node(GlobalID id) const {
  const auto found = nodes_.find(id);
  return found == nodes_.end() ? nullptr : &found->second;
}

std::optional<GlobalID> GraphModel::nodeIDBySerial(std::string_view serial) const {
  const auto found = nodesBySerial_.find(serial);
  if (found == nodesBySerial_.end()) return std::nullopt;
  return found->second;
}

const NodeRecord* GraphModel::nodeBySerial(std::string_view serial) const {
  const auto id = nodeIDBySerial(serial);
  return id ? node(*id) : nullptr;
}

const DeviceRecord* GraphModel::deviceOf(const NodeRecord& node) const {
  if (!node.device) return nullptr;
  const auto found = devices_.find(*node.device);
  return found == devices_.end() ? nullptr : &found->second;
}

const RouteRecord* GraphModel::routeOf(const NodeRecord& node) const {
  const auto* device = deviceOf(node);
  const auto profileDevice = number(node.properties, "card.profile.device");
  if (device == nullptr || !profileDevice) return nullptr;
  for (const auto& route : device->routes) {
    if (route.isOutput && !route.volumes.empty() && route.device == static_cast<std::int32_t>(*profileDevice)) {
      return &route;
    }
  }
  return nullptr;
}

const std::vector<float>& GraphModel::volumesOf(const NodeRecord& node) const {
  const auto* route = routeOf(node);
  return route != nullptr ? route->volumes : node.volumes;
}

std::optional<std::string> GraphModel::metadataValue(GlobalID subject, const std::string& key) const {
  const auto found = metadata_.find({subject, key});
  if (found == metadata_.end()) return std::nullopt;
  return found->second;
}

bool GraphModel::countsAsStream(const NodeRecord& node) const {
  if (node.kind != NodeKind::playback && node.kind != NodeKind::recording) return false;
  if (node.isOurs || node.isFilter || !node.hasInfo || flag(node.properties, "stream.monitor")) return false;
  // The two sides of a filter come one after the other, and none of them runs before both are there.
  return node.hasRun || text(node.properties, linkGroupKey).empty();
}

std::vector<GlobalID> GraphModel::linkGroupOf(GlobalID id) const {
  std::vector<GlobalID> others;
  const auto* node = this->node(id);
  const auto groups = node == nullptr ? std::string_view() : text(node->properties, linkGroupKey);
  if (groups.empty()) return others;
  for (const auto& [otherID, other] : nodes_) {
    if (otherID != id && shareLinkGroup(groups, text(other.properties, linkGroupKey))) others.push_back(otherID);
  }
  return others;
}

const std::string& GraphModel::identifierOf(const NodeRecord& node) const {
  static const std::string none;
  if (!node.client) return none;
  const auto found = clients_.find(*node.client);
  return found == clients_.end() ? none : found->second.identifier;
}

bool GraphModel::isOutput(const NodeRecord& node) {
  return (node.kind == NodeKind::sink || node.kind == NodeKind::duplex) && !node.isOurs;
}

bool GraphModel::playsOnAnOutput(GlobalID id) const {
  const auto* node = this->node(id);
  if (node == nullptr || node->kind != NodeKind::jack || node->isOurs) return false;
  const auto links = linksFrom(id);
  return std::any_of(links.begin(), links.end(), [&](const auto& link) {
    const auto* output = this->node(link.inputNode);
    return output != nullptr && isOutput(*output);
  });
}

std::vector<LinkRecord> GraphModel::linksInto(GlobalID inputNode) const { return linksAt(linksInto_, inputNode); }

std::vector<LinkRecord> GraphModel::linksFrom(GlobalID outputNode) const { return linksAt(linksFrom_, outputNode); }

std::vector<LinkRecord> GraphModel::linksAt(const std::map<GlobalID, std::set<GlobalID>>& index, GlobalID node) const {
  std::vector<LinkRecord> links;
  if (const auto found = index.find(node); found != index.end()) {
    for (const auto id : found->second) links.push_back(links_.at(id));
  }
  return links;
}

const PortRecord* GraphModel::port(GlobalID id) const {
  const auto found = ports_.find(id);
  return found == ports_.end() ? nullptr : &found->second;
}

bool GraphModel::isMonitorPort(GlobalID port) const {
  const auto* found = this->port(port);
  return found != nullptr && found->isMonitor;
}

std::vector<PortRecord> GraphModel::portsOf(GlobalID node) const {
  std::vector<PortRecord> found;
  if (const auto ports = portsByNode_.find(node); ports != portsByNode_.end()) {
    for (const auto id : ports->second) found.push_back(ports_.at(id));
  }
  return found;
}

bool GraphModel::hasLinkInto(GlobalID inputNode) const { return linksInto_.contains(inputNode); }

bool GraphModel::hasLinkFrom(GlobalID outputNode) const { return linksFrom_.contains(outputNode); }

bool GraphModel::areLinked(GlobalID outputNode, GlobalID inputNode) const {
  const auto links = linksInto(inputNode);
  return std::any_of(links.begin(), links.end(), [&](const auto& link) { return link.outputNode == outputNode; });
}

std::optional<GlobalID> GraphModel::linkedInput(GlobalID outputNode) const {
  const auto found = linksFrom_.find(outputNode);
  if (found == linksFrom_.end()) return std::nullopt;
  return links_.at(*found->second.begin()).inputNode;
}

std::string GraphModel::outputSerial(const std::optional<std::string>& name) const {
  const auto& wanted = name ? name : defaultOutput_;
  const NodeRecord* first = nullptr;
  for (const auto id : outputs_) {
    const auto& node = nodes_.at(id);
    if (!isOutput(node) || node.serial.empty() || node.name != wanted) continue;
    if (first == nullptr || node.order < first->order) first = &node;
  }
  return first != nullptr ? first->serial : std::string();
}

double GraphModel::graphRate() const {
  for (const auto* key : {"clock.force-rate", "clock.rate"}) {
    const auto rate = number(settings_, key).value_or(0);
    if (rate > 0) return rate;
  }
  return 48000.0;
}

bool GraphModel::isOurs(const NodeRecord& node) const {
  if (node.name.starts_with(ourNodePrefix)) return true;
  if (!node.client) return false;
  if (node.client == ownClient_) return true;
  const auto client = clients_.find(*node.client);
  if (client == clients_.end() || ownPID_ <= 0) return false;
  std::string ignored;
  return factsOf(client->second.properties, node.properties, ignored).pid == ownPID_;
}

std::map<GlobalID, ClientRecord>::iterator GraphModel::clientOf(const NodeRecord& node) {
  return node.client ? clients_.find(*node.client) : clients_.end();
}

void GraphModel::noteStream(const NodeRecord& node) {
  if (countsAsStream(node)) noteUse(node, node.kind == NodeKind::playback);
}

void GraphModel::noteLinks(GlobalID id) {
  const auto* node = this->node(id);
  if (node == nullptr || node->kind != NodeKind::jack || node->isOurs || !node->hasInfo) return;
  const bool isPlaying = playsOnAnOutput(id);
  if (isPlaying || hasLinkInto(id)) noteUse(*node, isPlaying);
}

void GraphModel::noteUse(const NodeRecord& node, bool isPlayback) {
  const auto client = clientOf(node);
  if (client == clients_.end()) return;
  if (isPlayback) client->second.hasPlayed = true;
  if (std::exchange(client->second.hasStreamed, true)) return;
  identify(client->first, client->second, node.properties);
}

void GraphModel::noteFilter(GlobalID id) {
  const auto others = linkGroupOf(id);
  if (others.empty()) return;
  const auto judge = [this](NodeRecord& one, const NodeRecord& other) {
    if (one.isFilter || !areTwoSides(one.properties, other.properties)) return;
    one.isFilter = true;
    // It may have been taken for an application's until its other side came.
    const auto client = clientOf(one);
    if (client == clients_.end()) return;
    client->second.hasStreamed = client->second.hadStream;
    client->second.hasPlayed = client->second.hadPlayback;
    for (const auto& [streamID, stream] : nodes_) {
      if (stream.client == one.client) noteStream(stream);
    }
  };
  auto& node = nodes_.at(id);
  for (const auto other : others) {
    judge(node, nodes_.at(other));
    judge(nodes_.at(other), node);
  }
}

void GraphModel::identify(GlobalID clientID, ClientRecord& client, const Properties& stream) {
  std::string problem;
  auto facts = factsOf(client.properties, stream, problem);
  if (stream.empty()) {
    // What only the first stream told stays.
    facts.nodeName = client.facts.nodeName;
    facts.mediaRole = client.facts.mediaRole;
    if (facts.applicationID.empty()) facts.applicationID = client.facts.applicationID;
    if (facts.applicationName.empty()) facts.applicationName = client.facts.applicationName;
    if (facts.processBinary.empty()) facts.processBinary = client.facts.processBinary;
    if (facts.pid == 0) {
      facts.pid = client.facts.pid;
      facts.pidIsTrusted = client.facts.pidIsTrusted;
    }
  }
  if (!client.identifier.empty() && facts == client.facts) return;
  if (!problem.empty()) log_.error(problem);
  client.facts = std::move(facts);
  client.identifier = identify_ ? identify_(client.facts) : std::string();
  if (client.identifier.empty()) client.identifier = defaultApplicationIdentifier(client.facts);
  if (client.identifier.empty()) {
    client.identifier = "unnamed-audio-client";
    log_.error(logText("audio client %u says nothing about itself", clientID));
  }
}

}  // namespace quillmere::pipewire
