// A graph model that tests fill in a few words.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/pipewire/GraphModel.h"
#include "platform/linux/pipewire/MetadataWriter.h"
#include "runtime/Logger.h"

namespace quillmere::pipewire::test {

class Log final : public LogSink {
 public:
  void write(LogLevel, std::string_view, std::string_view, std::string_view message) override {
    lines.emplace_back(message);
  }
  std::vector<std::string> lines;
};

struct Graph {
  Log log;
  GraphModel model{defaultApplicationIdentifier, Logger(log, "PipeWire"), 4711};

  void client(GlobalID id, const std::string& applicationID, Properties more = {}) {
    if (!applicationID.empty()) more["application.id"] = applicationID;
    model.updateClient(id, more);
  }
  /// A running node with its properties told.
  void node(GlobalID id, const std::string& mediaClass, GlobalID client, Properties more = {}) {
    more["media.class"] = mediaClass;
    more.try_emplace("object.serial", std::to_string(1000 + id));
    more.try_emplace("node.name", "node-" + std::to_string(id));
    if (client != 0) more["client.id"] = std::to_string(client);
    model.updateNode(id, more);
    model.setNodeInfo(id, true);
  }
  void playback(GlobalID id, GlobalID client, Properties more = {}, const std::string& serial = {}) {
    if (!serial.empty()) more["object.serial"] = serial;
    node(id, "Stream/Output/Audio", client, std::move(more));
  }
  void recording(GlobalID id, GlobalID client, Properties more = {}) {
    node(id, "Stream/Input/Audio", client, std::move(more));
  }
  /// A client of JACK's interface.
  void jack(GlobalID id, GlobalID client, Properties more = {}) {
    more["client.api"] = "jack";
    more["media.role"] = "DSP";
    node(id, "", client, std::move(more));
  }
  void sink(GlobalID id, const std::string& name, Properties more = {}) {
    more["node.name"] = name;
    node(id, "Audio/Sink", 0, std::move(more));
  }
  void link(GlobalID id, GlobalID from, GlobalID to, GlobalID fromPort = 900, GlobalID toPort = 901) {
    model.updateLink(id, {{"link.output.node", std::to_string(from)},
                          {"link.output.port", std::to_string(fromPort)},
                          {"link.input.node", std::to_string(to)},
                          {"link.input.port", std::to_string(toPort)}});
  }
};

/// What was written, as "subject key=value"; "-" stands for a deletion. The model learns it when echo() is called.
class Metadata final : public MetadataWriter {
 public:
  explicit Metadata(GraphModel& model) : model_(model) {}
  void write(std::uint32_t subject, const std::string& key, const std::string&,
             const std::optional<std::string>& value) override {
    lines.push_back(std::to_string(subject) + " " + key + "=" + value.value_or("-"));
    waiting_.push_back({subject, key, value});
  }
  /// Tells every write back; returns the targets that changed.
  std::vector<std::pair<GlobalID, std::optional<std::string>>> echo() {
    std::vector<std::pair<GlobalID, std::optional<std::string>>> targets;
    for (const auto& entry : waiting_) {
      if (model_.metadataValue(entry.subject, entry.key) == entry.value) continue;
      model_.setMetadata(entry.subject, entry.key, entry.value);
      if (entry.key == "target.object") targets.emplace_back(entry.subject, entry.value);
    }
    waiting_.clear();
    return targets;
  }
  void loseEcho() { waiting_.clear(); }
  std::vector<std::string> take() { return std::exchange(lines, {}); }
  std::vector<std::string> lines;

 private:
  struct Entry {
    GlobalID subject;
    std::string key;
    std::optional<std::string> value;
  };
  GraphModel& model_;
  std::vector<Entry> waiting_;
};

}  // namespace quillmere::pipewire::test
