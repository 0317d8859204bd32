#include "StreamMover.h"

#include <algorithm>

namespace quillmere::pipewire {
namespace {

const std::string targetObject = "target.object";
const std::string targetNode = "target.node";
const std::string idType = "Spa:Id";
/// In place of a target: the default output, whatever the stream itself asks for.
constexpr std::string_view automatic = "-1";
/// A person doesn't say the same so often; a program that sends the stream back each time would go on for ever.
constexpr int mostRepeats = 20;

}  // namespace

StreamMover::StreamMover(const GraphModel& model, MetadataWriter& metadata, Logger log)
    : model_(model), metadata_(metadata), log_(std::move(log)) {}

void StreamMover::claim(const std::string& application, const Destination& route, const Destination& destination,
                        const std::string& serial) {
  auto& claim = claims_[application];
  claim.route = route;
  claim.taps[destination] = serial;
  ownSerials_.insert(serial);
  settle();
}

void StreamMover::release(const std::string& application, const Destination& destination) {
  const auto claim = claims_.find(application);
  if (claim == claims_.end()) return;
  const auto tap = claim->second.taps.find(destination);
  if (tap == claim->second.taps.end()) return;
  const auto serial = tap->second;
  claim->second.taps.erase(tap);
  if (claim->second.taps.empty()) claims_.erase(claim);
  forgetGone();
  std::erase_if(moved_, [&](const auto& entry) {
    if (entry.second.application != application || entry.second.serial != serial) return false;
    if (!entry.second.isLeftAlone && !hasLeft(entry.first, entry.second)) restore(entry.first, entry.second);
    return true;
  });
}

void StreamMover::forgetWishes(const std::string& application) {
  for (auto& [id, moved] : moved_) {
    if (moved.application == application) moved.isWish = moved.isLeftAlone = false;
  }
}

void StreamMover::forget() {
  claims_.clear();
  moved_.clear();
  echoes_.clear();
  toldUnmovable_.clear();
  // A daemon that starts anew gives serials anew, and the metadata that may name the old ones is gone.
  ownSerials_.clear();
}

std::set<Destination> StreamMover::destinations(const std::string& application, const Destination& route) const {
  std::set<Destination> found;
  for (const auto& [id, node] : model_.nodes()) {
    if (belongs(node, application)) found.insert(bound(id, node, route));
  }
  return found;
}

void StreamMover::settle() {
  forgetGone();
  if (claims_.empty()) return;

  for (const auto& [id, node] : model_.nodes()) {
    if (node.kind != NodeKind::playback || !model_.countsAsStream(node)) continue;
    const auto& application = model_.identifierOf(node);
    const auto claim = claims_.find(application);
    if (claim == claims_.end() || !isComplete(node)) continue;
    if (!isMovable(node)) {
      if (toldUnmovable_.insert(node.serial).second) {
        log_.standard(logText("a stream of %s asks not to be moved and stays as it is", application.c_str()));
      }
      continue;
    }
    const auto tap = claim->second.taps.find(bound(id, node, claim->second.route));
    if (tap == claim->second.taps.end()) continue;
    const auto found = moved_.find(id);
    if (found == moved_.end()) {
      Moved moved;
      moved.stream = node.serial;
      moved.application = application;
      moved.asked = askedBy(id, node);
      moved.originalObject = currentTarget(id);
      if (moved.originalObject && ownSerials_.contains(*moved.originalObject)) moved.originalObject.reset();
      moved.originalNode = model_.metadataValue(id, targetNode);
      if (moved.originalNode == automatic) moved.originalNode.reset();
      send(id, moved_[id] = std::move(moved), tap->second);
    } else if (!found->second.isLeftAlone && found->second.serial != tap->second) {
      send(id, found->second, tap->second);
    } else if (!found->second.hasArrived) {
      const auto tapNode = model_.nodeIDBySerial(tap->second);
      found->second.hasArrived = tapNode && model_.areLinked(id, *tapNode);
    }
  }
}

bool StreamMover::hasLeft(GlobalID stream, const Moved& moved) const {
  const auto tap = model_.nodeIDBySerial(moved.serial);
  return moved.hasArrived && tap && model_.hasLinkFrom(stream) && !model_.areLinked(stream, *tap);
}

void StreamMover::forgetGone() {
  const auto isGone = [&](const auto& entry) {
    const auto* node = model_.node(entry.first);
    return node == nullptr || node->serial != entry.second.stream;
  };
  std::erase_if(moved_, isGone);
  std::erase_if(echoes_, isGone);
  std::erase_if(toldUnmovable_, [&](const std::string& serial) { return model_.nodeBySerial(serial) == nullptr; });
}

void StreamMover::onTargetChanged(GlobalID stream, const std::optional<std::string>& target) {
  forgetGone();
  if (const auto waiting = echoes_.find(stream); waiting != echoes_.end()) {
    auto& queue = waiting->second.targets;
    const auto echo = std::find(queue.begin(), queue.end(), target);
    if (echo != queue.end()) {
      queue.erase(queue.begin(), echo + 1);
      if (queue.empty()) echoes_.erase(waiting);
      return;
    }
  }
  const auto found = moved_.find(stream);
  if (found == moved_.end()) return;
  auto& moved = found->second;
  if (target && ownSerials_.contains(*target)) return;
  const auto* node = model_.node(stream);
  if (target) {
    const Destination wish = *target == automatic ? std::nullopt : Destination(*target);
    if (!moved.hasArrived) {
      // Too early for a person: the session manager restores what it has stored for this kind of stream.
      moved.originalObject = target;
      moved.asked = wish;
      bringBack(stream, moved);
      return;
    }
    moved.repeats = moved.isWish && moved.asked == wish ? moved.repeats + 1 : 0;
    if (moved.repeats == 0) {
      log_.info(logText("a stream of %s was moved by another program; its tap follows", moved.application.c_str()));
    } else if (moved.repeats == mostRepeats) {
      log_.standard(logText("another program insists on where a stream of %s plays; it is left there untapped",
                            moved.application.c_str()));
    }
    moved.isLeftAlone = moved.repeats >= mostRepeats;
    moved.isWish = true;
    moved.originalObject = target;
    moved.asked = wish;
  } else {
    // Taken back: it belongs where it would be without anybody's word.
    moved.isWish = moved.isLeftAlone = false;
    moved.originalObject.reset();
    moved.asked = askedBy(stream, *node);
  }
  if (!moved.isLeftAlone) bringBack(stream, moved);
}

void StreamMover::onNodeTargetChanged(GlobalID stream, const std::optional<std::string>& target) {
  forgetGone();
  const auto found = moved_.find(stream);
  if (found == moved_.end() || !target || *target == automatic) return;
  auto& moved = found->second;
  // What we write there ourselves is one of these.
  const auto original = moved.originalObject ? model_.nodeIDBySerial(*moved.originalObject) : std::nullopt;
  if (target == moved.originalNode || (original && *target == std::to_string(*original))) return;
  moved.originalNode = target;
  if (!moved.isWish && !moved.originalObject) moved.asked = serialOf(*target);
}

void StreamMover::bringBack(GlobalID stream, Moved& moved) {
  const auto claim = claims_.find(moved.application);
  const auto* node = model_.node(stream);
  if (claim == claims_.end() || node == nullptr) return;
  const auto tap = claim->second.taps.find(bound(stream, *node, claim->second.route));
  send(stream, moved, tap != claim->second.taps.end() ? tap->second : moved.serial);
}

bool StreamMover::hasRunningStream(const std::string& application, const Destination& route,
                                   const Destination& destination) const {
  return std::any_of(model_.nodes().begin(), model_.nodes().end(), [&](const auto& entry) {
    const auto& node = entry.second;
    return node.isRunning && belongs(node, application) && bound(entry.first, node, route) == destination;
  });
}

bool StreamMover::hasTappedStream(const std::string& application, const Destination& route,
                                  const Destination& destination) const {
  return std::any_of(moved_.begin(), moved_.end(), [&](const auto& entry) {
    const auto* node = model_.node(entry.first);
    return entry.second.application == application && entry.second.hasArrived && node != nullptr && node->isRunning &&
           bound(entry.first, *node, route) == destination;
  });
}

bool StreamMover::isComplete(const NodeRecord& node) {
  return text(node.properties, "client.api") != "pipewire-pulse" || node.properties.contains("pulse.attr.tlength");
}

bool StreamMover::isMovable(const NodeRecord& node) {
  return !flag(node.properties, "node.dont-reconnect") && !flag(node.properties, "node.dont-move");
}

bool StreamMover::belongs(const NodeRecord& node, const std::string& application) const {
  return node.kind == NodeKind::playback && model_.countsAsStream(node) && isComplete(node) && isMovable(node) &&
         model_.identifierOf(node) == application;
}

Destination StreamMover::serialOf(std::string_view id) const {
  const auto number = wholeNumber(id);
  const auto* node = number ? model_.node(*number) : nullptr;
  return node != nullptr && !node->serial.empty() ? Destination(node->serial) : std::nullopt;
}

Destination StreamMover::askedBy(GlobalID stream, const NodeRecord& node) const {
  // The session manager's own order: metadata before properties, serials and names before ids.
  if (const auto object = model_.metadataValue(stream, targetObject); object && !ownSerials_.contains(*object)) {
    return *object == automatic ? std::nullopt : object;
  }
  if (const auto id = model_.metadataValue(stream, targetNode)) {
    return *id == automatic ? std::nullopt : serialOf(*id);
  }
  if (const auto own = text(node.properties, "target.object"); !own.empty() && own != automatic) {
    return std::string(own);
  }
  if (const auto own = std::string(text(node.properties, "node.target")); !own.empty() && own != automatic) {
    const auto serial = serialOf(own);
    return serial ? serial : Destination(own);
  }
  return std::nullopt;
}

Destination StreamMover::bound(GlobalID stream, const NodeRecord& node, const Destination& route) const {
  const auto found = moved_.find(stream);
  const bool isMoved = found != moved_.end() && found->second.stream == node.serial;
  if (isMoved && found->second.isWish) return alike(found->second.asked, route);
  if (route) return route;
  return isMoved ? found->second.asked : askedBy(stream, node);
}

Destination StreamMover::alike(const Destination& asked, const Destination& route) const {
  const auto* output = asked ? model_.nodeBySerial(*asked) : nullptr;
  return output != nullptr && route == output->name ? route : asked;
}

std::optional<std::string> StreamMover::currentTarget(GlobalID stream) const {
  const auto waiting = echoes_.find(stream);
  if (waiting != echoes_.end()) return waiting->second.targets.back();
  return model_.metadataValue(stream, targetObject);
}

void StreamMover::writeTarget(GlobalID stream, const std::optional<std::string>& target) {
  // A value that is there already is not told again, so no echo would come.
  if (currentTarget(stream) == target) return;
  const auto* node = model_.node(stream);
  if (node == nullptr) return;
  auto& echoes = echoes_[stream];
  echoes.stream = node->serial;
  echoes.targets.push_back(target);
  metadata_.write(stream, targetObject, idType, target);
}

void StreamMover::send(GlobalID stream, Moved& moved, const std::string& serial) {
  if (moved.serial != serial) moved.hasArrived = false;
  moved.serial = serial;
  writeTarget(stream, serial);
  // The session manager stores whatever target was written last, by name, for the next stream of this kind. Ours must
  // not stay there: the older key overwrites it with nothing, or with the choice that the user had made.
  auto stored = moved.originalNode;
  if (moved.originalObject) {
    const auto node = model_.nodeIDBySerial(*moved.originalObject);
    if (node) stored = std::to_string(*node);
  }
  metadata_.write(stream, targetNode, idType, std::string(automatic));
  metadata_.write(stream, targetNode, idType, stored);
}

void StreamMover::restore(GlobalID stream, const Moved& moved) {
  metadata_.write(stream, targetNode, idType, moved.originalNode);
  writeTarget(stream, moved.originalObject);
}

}  // namespace quillmere::pipewire
