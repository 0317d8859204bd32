// Works out the smallest set of row changes between two orders.
#include "views/shared/KeyedListModel.h"

#include <algorithm>
#include <map>
#include <set>

namespace quillmere {

namespace {

std::vector<std::string> withoutRepetitions(const std::vector<std::string>& keys) {
  std::vector<std::string> unique;
  std::set<std::string> seen;
  for (const auto& key : keys) {
    if (seen.insert(key).second) unique.push_back(key);
  }
  return unique;
}

/// The members of a longest increasing run of `ranks`, not necessarily adjacent: the rows that may stay where they are.
std::set<int> longestIncreasing(const std::vector<int>& ranks) {
  std::vector<std::size_t> tails;
  std::vector<std::ptrdiff_t> previous(ranks.size(), -1);
  for (std::size_t i = 0; i < ranks.size(); ++i) {
    const auto at = std::ranges::lower_bound(tails, ranks[i], {}, [&](std::size_t tail) { return ranks[tail]; });
    if (at != tails.begin()) previous[i] = static_cast<std::ptrdiff_t>(*(at - 1));
    if (at == tails.end()) {
      tails.push_back(i);
    } else {
      *at = i;
    }
  }
  std::set<int> members;
  for (auto i = tails.empty() ? -1 : static_cast<std::ptrdiff_t>(tails.back()); i >= 0;
       i = previous[static_cast<std::size_t>(i)]) {
    members.insert(ranks[static_cast<std::size_t>(i)]);
  }
  return members;
}

}  // namespace

int KeyedListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

void KeyedListModel::arrange(const std::vector<std::string>& wanted) {
  const auto target = withoutRepetitions(wanted);
  if (target == keys_) return;
  const auto countBefore = keys_.size();
  std::map<std::string, int> rankOf;
  for (const auto& key : target) rankOf.emplace(key, static_cast<int>(rankOf.size()));

  for (int row = count() - 1; row >= 0; --row) {
    if (rankOf.contains(keys_[static_cast<std::size_t>(row)])) continue;
    beginRemoveRows({}, row, row);
    keys_.erase(keys_.begin() + row);
    removedAt(row);
    endRemoveRows();
  }

  std::vector<int> ranks;
  ranks.reserve(keys_.size());
  for (const auto& key : keys_) ranks.push_back(rankOf.at(key));
  const auto staying = longestIncreasing(ranks);

  int previousRow = -1;
  for (int rank = 0; rank < static_cast<int>(target.size()); ++rank) {
    const auto& key = target[static_cast<std::size_t>(rank)];
    const auto found = std::ranges::find(keys_, key);
    const int row = static_cast<int>(found - keys_.begin());
    if (found == keys_.end()) {
      const int at = previousRow + 1;
      beginInsertRows({}, at, at);
      keys_.insert(keys_.begin() + at, key);
      insertedAt(at, key);
      endInsertRows();
      previousRow = at;
    } else if (staying.contains(rank)) {
      previousRow = row;
    } else {
      // Taking the row out from before its predecessor lets that one slide up by one.
      const int to = row < previousRow ? previousRow : previousRow + 1;
      if (row != to) moveRow(row, to);
      previousRow = to;
    }
  }
  if (keys_.size() != countBefore) Q_EMIT countChanged();
}

void KeyedListModel::moveRow(int from, int to) {
  beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
  auto key = std::move(keys_[static_cast<std::size_t>(from)]);
  keys_.erase(keys_.begin() + from);
  keys_.insert(keys_.begin() + to, std::move(key));
  moved(from, to);
  endMoveRows();
}

}  // namespace quillmere
