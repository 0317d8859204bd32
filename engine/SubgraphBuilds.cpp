// How paths are looked after and handed out.
#include "engine/SubgraphBuilds.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quillmere {

using Progress = ProcessTapSubgraph::Progress;

void SubgraphBuilds::build(const std::string& bundleID, std::unique_ptr<ProcessTapSubgraph> subgraph, float initialGain,
                           const std::optional<std::string>& routedOutputUID) {
  auto& activated = *subgraph;
  builds_[bundleID].subgraph = std::move(subgraph);
  takeProgress(bundleID, activated.activate(initialGain, routedOutputUID));
}

void SubgraphBuilds::inTurn(const std::string& bundleID, Work step) {
  if (const auto build = builds_.find(bundleID); build != builds_.end()) {
    build->second.waiting.push_back(std::move(step));
  } else {
    step();
  }
}

std::vector<std::string> SubgraphBuilds::applications() const {
  std::vector<std::string> bundleIDs;
  bundleIDs.reserve(builds_.size());
  for (const auto& entry : builds_) bundleIDs.push_back(entry.first);
  return bundleIDs;
}

std::vector<Work> SubgraphBuilds::abandon() {
  std::vector<Work> steps;
  for (auto& entry : builds_) std::ranges::move(entry.second.waiting, std::back_inserter(steps));
  builds_.clear();
  return steps;
}

void SubgraphBuilds::takeProgress(const std::string& bundleID, Progress progress) {
  if (progress == Progress::waiting) {
    pollLater();
    return;
  }
  auto build = std::move(builds_.extract(bundleID).mapped());
  const bool isLive = progress == Progress::live;
  built_(bundleID, isLive ? std::move(build.subgraph) : nullptr);
  if (isLive) {
    // One after the other, each would have had its time to itself.
    for (auto& entry : builds_) entry.second.subgraph->waitAnew();
  }
  // Any of them may begin the next path, which those behind it wait for in their turn.
  for (auto& step : build.waiting) inTurn(bundleID, std::move(step));
}

void SubgraphBuilds::pollLater() {
  if (std::exchange(isPollDue_, true)) return;
  queue_.asyncAfter(ProcessTapSubgraph::alivePoll, [this] {
    isPollDue_ = false;
    poll();
  });
}

void SubgraphBuilds::poll() {
  for (const auto& bundleID : applications()) takeProgress(bundleID, builds_.at(bundleID).subgraph->proceed());
}

}  // namespace quillmere
