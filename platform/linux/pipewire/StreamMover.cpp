#include "StreamMover.h"

#include <algorithm>

namespace quillmere::pipewire {
namespace {

const std::string targetObject = "target.object";
const std::string targetNode = "target.node";
const std::string idType = "Spa:Id";
constexpr std::string_view automatic = "-1";

}  // namespace

StreamMover::StreamMover(const GraphModel& model, MetadataWriter& metadata, Logger log)
    : model_(model), metadata_(metadata), log_(std::move(log)) {}

void StreamMover::claim(const std::string& application, const std::string& serial) {
  claims_[application] = serial;
  ownSerials_.insert(serial);
  settle();
}

void StreamMover::release(const std::string& application) {
  claims_.erase(application);
  forgetGone();
  std::erase_if(moved_, [&](const auto& entry) {
    if (entry.second.application != application) return false;
    if (!entry.second.isLeftAlone && !hasLeft(entry.first, entry.second)) restore(entry.first, entry.second);
    return true;
  });
}

void StreamMover::forget() {
  claims_.clear();
  moved_.clear();
  echoes_.clear();
  toldUnmovable_.clear();
  // A daemon that starts anew gives serials anew, and the metadata that may name the old ones is gone.
  ownSerials_.clear();
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
    const auto found = moved_.find(id);
    if (found == moved_.end()) {
      Moved moved;
      moved.stream = node.serial;
      moved.application = application;
      moved.originalObject = currentTarget(id);
      if (moved.originalObject && ownSerials_.contains(*moved.originalObject)) moved.originalObject.reset();
      moved.originalNode = model_.metadataValue(id, targetNode);
      if (moved.originalNode == automatic) moved.originalNode.reset();
      send(id, moved_[id] = std::move(moved), claim->second);
    } else if (!found->second.isLeftAlone && found->second.serial != claim->second) {
      send(id, found->second, claim->second);
    } else if (!found->second.hasArrived) {
      const auto tap = model_.nodeIDBySerial(claim->second);
      found->second.hasArrived = tap && model_.areLinked(id, *tap);
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
  if (target && *target != automatic) {
    if (ownSerials_.contains(*target)) return;
    if (!moved.isLeftAlone) {
      log_.info(logText("a stream of %s was moved by another program and is left alone", moved.application.c_str()));
    }
    moved.isLeftAlone = true;
    return;
  }
  // Sent back to wherever it belongs: that is the tap, as long as there is one.
  moved.isLeftAlone = false;
  moved.originalObject.reset();
  if (const auto claim = claims_.find(moved.application); claim != claims_.end()) send(stream, moved, claim->second);
}

bool StreamMover::hasRunningStream(const std::string& application) const {
  return std::any_of(model_.nodes().begin(), model_.nodes().end(), [&](const auto& entry) {
    const auto& node = entry.second;
    return node.kind == NodeKind::playback && node.isRunning && model_.countsAsStream(node) && isComplete(node) &&
           isMovable(node) && model_.identifierOf(node) == application;
  });
}

bool StreamMover::isComplete(const NodeRecord& node) {
  return text(node.properties, "client.api") != "pipewire-pulse" || node.properties.contains("pulse.attr.tlength");
}

bool StreamMover::isMovable(const NodeRecord& node) const {
  return !flag(node.properties, "node.dont-reconnect") && !flag(node.properties, "node.dont-move");
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
  moved.serial = serial;
  moved.hasArrived = false;
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
