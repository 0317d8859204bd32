// Paths on their way: built side by side, while what their applications are asked meanwhile waits its turn.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/ProcessTapSubgraph.h"
#include "runtime/SerialQueue.h"

namespace quillmere {

/// [engine] throughout.
class SubgraphBuilds {
 public:
  /// Takes a path that is live, null where it has failed.
  using Built = std::function<void(const std::string& bundleID, std::unique_ptr<ProcessTapSubgraph> subgraph)>;

  /// This outlives what runs on the queue.
  SubgraphBuilds(SerialQueue& queue, Built built) : queue_(queue), built_(std::move(built)) {}
  SubgraphBuilds(const SubgraphBuilds&) = delete;
  SubgraphBuilds& operator=(const SubgraphBuilds&) = delete;

  /// Activates a path; `built` is called before this returns where nothing has to be waited for. An application has one
  /// build at a time.
  void build(const std::string& bundleID, std::unique_ptr<ProcessTapSubgraph> subgraph, float initialGain,
             const std::optional<std::string>& routedOutputUID);
  /// Runs a step of an application's story: now, or when its path is built and the steps before have run.
  void inTurn(const std::string& bundleID, Work step);
  /// Whose paths are being built.
  [[nodiscard]] std::vector<std::string> applications() const;
  /// Drops every path, untold; the steps that waited, those of each application in their order.
  std::vector<Work> abandon();

 private:
  struct Build {
    std::unique_ptr<ProcessTapSubgraph> subgraph;
    std::deque<Work> waiting;
  };

  void takeProgress(const std::string& bundleID, ProcessTapSubgraph::Progress progress);
  void pollLater();
  void poll();

  SerialQueue& queue_;
  Built built_;
  std::map<std::string, Build> builds_;
  bool isPollDue_ = false;
};

}  // namespace quillmere
